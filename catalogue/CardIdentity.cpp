#include "catalogue/CardIdentity.h"

#include "catalogue/CardModels.h"
#include "catalogue/Dates.h"
#include "catalogue/Numbers.h"

namespace catalogue {
namespace {

struct Field {
    int lowestBit;
    uint32_t mask;
    std::size_t position;
    std::size_t digits;
    int base;
    uint32_t first;  // first and last value on a real card
    uint32_t last;
};

constexpr Field kModel = {24, 0xFF, 0, 2, 16, kFirstModelCode, kLastModelCode};
constexpr Field kYear = {20, 0xF, 2, 2, 10, 1, 15};
constexpr Field kWeek = {12, 0xFF, 4, 2, 10, 1, 53};
constexpr Field kUnit = {0, 0xFFF, 6, 4, 10, 1, 4095};

uint32_t valueOf(const Field& field, uint32_t identity) {
    return identity >> field.lowestBit & field.mask;
}

std::string textOf(const Field& field, uint32_t identity) {
    return paddedNumber(valueOf(field, identity), field.digits, field.base);
}

std::string_view charactersOf(const Field& field, std::string_view serialNumber) {
    return serialNumber.substr(field.position, field.digits);
}

// One byte for every character; those beyond ASCII become one that is not a digit.
std::string oneBytePerCharacter(std::string_view utf8) {
    std::string characters;
    for (const char byte : utf8) {
        const bool isContinuation = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
        if (!isContinuation) {
            characters += static_cast<unsigned char>(byte) < 0x80 ? byte : '?';
        }
    }
    return characters;
}

}  // namespace

bool isBlankIdentity(uint32_t identity) {
    return identity == kNoIdentity || identity == kErasedIdentity;
}

uint16_t identityModelCode(uint32_t identity) {
    return static_cast<uint16_t>(valueOf(kModel, identity));
}

std::string serialNumberText(uint32_t identity) {
    return textOf(kModel, identity) + textOf(kYear, identity) + textOf(kWeek, identity) +
           textOf(kUnit, identity);
}

std::string serialNumberPrefix(uint16_t modelCode) {
    return paddedNumber(modelCode, kModel.digits, kModel.base);
}

std::string manufactureDateText(uint32_t identity) {
    return weekDateText(valueOf(kWeek, identity), valueOf(kYear, identity));
}

std::optional<uint32_t> parseTypedSerialNumber(std::string_view text) {
    const std::string characters = oneBytePerCharacter(text);
    if (characters.size() != kSerialNumberCharacters) {
        return std::nullopt;
    }
    uint32_t identity = 0;
    for (const Field& field : {kModel, kYear, kWeek, kUnit}) {
        const uint32_t value = leadingNumber(charactersOf(field, characters), field.base);
        if (value < field.first || value > field.last) {
            return std::nullopt;
        }
        identity |= value << field.lowestBit;
    }
    return identity;
}

std::optional<uint32_t> parseSerialNumber(std::string_view text) {
    if (text.size() != kSerialNumberCharacters) {
        return std::nullopt;
    }
    uint32_t identity = 0;
    for (const Field& field : {kModel, kYear, kWeek, kUnit}) {
        const auto value = wholeNumber(charactersOf(field, text), field.base);
        if (!value || *value > field.mask) {
            return std::nullopt;
        }
        identity |= *value << field.lowestBit;
    }
    return identity;
}

}  // namespace catalogue
