#include "app/logic/CardIdentity.h"

#include "app/logic/Calendar.h"
#include "app/logic/CardModel.h"
#include "app/logic/FormatText.h"
#include "hw/PromOperations.h"

namespace {

// Positions and lengths of a serial number's fields.
constexpr std::size_t kSerialNumberCharacters = 10;
constexpr std::size_t kYearPosition = 2;
constexpr std::size_t kWeekPosition = 4;
constexpr std::size_t kUnitPosition = 6;

constexpr uint32_t kLastYear = 15;
constexpr uint32_t kLastWeek = 53;
constexpr uint32_t kLastUnit = 4095;

uint32_t yearOf(uint32_t identity) {
    return identity >> 20 & 0xF;
}

uint32_t weekOf(uint32_t identity) {
    return identity >> 12 & 0xFF;
}

uint32_t unitOf(uint32_t identity) {
    return identity & 0xFFF;
}

// One byte for every character; those beyond ASCII become one that is no digit.
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

// The value of a digit of a base up to 16, or the base when it is none.
uint32_t digitValue(char character, uint32_t base) {
    uint32_t value = base;
    if (character >= '0' && character <= '9') {
        value = static_cast<uint32_t>(character - '0');
    } else if (character >= 'a' && character <= 'f') {
        value = static_cast<uint32_t>(character - 'a' + 10);
    } else if (character >= 'A' && character <= 'F') {
        value = static_cast<uint32_t>(character - 'A' + 10);
    }
    return value < base ? value : base;
}

uint32_t leadingNumber(std::string_view field, uint32_t base) {
    uint32_t number = 0;
    for (const char character : field) {
        const uint32_t digit = digitValue(character, base);
        if (digit == base) {
            break;
        }
        number = number * base + digit;
    }
    return number;
}

bool isBetween1And(uint32_t last, uint32_t number) {
    return number >= 1 && number <= last;
}

}  // namespace

uint16_t IdentityModelCode(uint32_t identity) {
    return static_cast<uint16_t>(identity >> 24);
}

std::string SerialNumberText(uint32_t identity) {
    return SerialNumberPrefix(IdentityModelCode(identity)) +
           FormatText("%02u%02u%04u", yearOf(identity), weekOf(identity), unitOf(identity));
}

std::string SerialNumberPrefix(uint16_t modelCode) {
    return FormatText("%02x", modelCode);
}

std::optional<uint32_t> ParseSerialNumber(std::string_view text) {
    const std::string characters = oneBytePerCharacter(text);
    if (characters.size() != kSerialNumberCharacters) {
        return std::nullopt;
    }
    const std::string_view fields = characters;
    const uint32_t model = leadingNumber(fields.substr(0, kYearPosition), 16);
    const uint32_t year = leadingNumber(fields.substr(kYearPosition, kWeekPosition - kYearPosition), 10);
    const uint32_t week = leadingNumber(fields.substr(kWeekPosition, kUnitPosition - kWeekPosition), 10);
    const uint32_t unit = leadingNumber(fields.substr(kUnitPosition), 10);
    if (!IsModelCode(model) || !isBetween1And(kLastYear, year) || !isBetween1And(kLastWeek, week) ||
        !isBetween1And(kLastUnit, unit)) {
        return std::nullopt;
    }
    return model << 24 | year << 20 | week << 12 | unit;
}

std::string ManufactureDateText(uint32_t identity) {
    // The first day of the week, counted from 1. Week 0 wraps to a day that no year has.
    auto day = static_cast<uint16_t>(weekOf(identity) * 7 - 6);
    if (identity == kNoIdentity || day < 1 || day > kDaysInYear) {
        return "Unknown!";
    }
    int month = 0;
    while (month < kMonths && day >= gMonthDays[month]) {
        day = static_cast<uint16_t>(day - gMonthDays[month]);
        ++month;
    }
    if (month == kMonths) {
        // Week 53 begins on the last day of the year.
        month = kMonths - 1;
        day = gMonthDays[month];
    }
    return DateText(month, day, static_cast<int>(yearOf(identity)) + kFirstYear);
}
