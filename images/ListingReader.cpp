#include "images/ListingReader.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include "files/UserError.h"
#include "images/ByteText.h"
#include "images/Command.h"
#include "images/Listing.h"
#include "images/ListingWords.h"
#include "images/TapStates.h"

namespace images {
namespace {

using files::UserError;
using Words = std::span<const std::string_view>;

constexpr std::size_t kMostSteps = 255;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

void requireOperands(std::string_view name, Words operands, std::size_t count) {
    if (operands.size() != count) {
        throw UserError(std::string(name) + " takes " + std::to_string(count) +
                        (count == 1 ? " operand, not " : " operands, not ") +
                        std::to_string(operands.size()) + ".");
    }
}

// Of the forms whose number of operands is fixed.
std::size_t operandCount(Operands operands) {
    switch (operands) {
        case Operands::none:
            return 0;
        case Operands::instruction:
        case Operands::twoValues:
            return 2;
        default:
            return 1;
    }
}

std::optional<uint8_t> endStateCode(XsvfOpcode opcode, std::string_view name) {
    for (const uint8_t operand : {kXsvfEndIdle, kXsvfEndPause}) {
        if (name == endStateName(opcode, operand)) {
            return operand;
        }
    }
    return std::nullopt;
}

// The code of the state that a word names, or the byte that the word is.
uint8_t parseState(std::optional<uint8_t> named, std::string_view word) {
    if (named) {
        return *named;
    }
    if (word.front() < '0' || word.front() > '9') {
        throw UserError(quotedWord(word) + " is not a state that can be used here.");
    }
    return parseByte(word);
}

// Builds an image line by line.
class ImageWriter {
  public:
    explicit ImageWriter(std::size_t mostBytes) : mostBytes_(mostBytes) {}

    // Appends what a line's words stand for. Throws UserError without the line's number.
    void take(Words words) {
        const Words operands = words.subspan(1);
        if (words.front() == kBytesLine) {
            requireOperands(kBytesLine, operands, 1);
            putBytes(operands[0]);
            return;
        }
        const CommandForm* const form = formNamed(words.front());
        if (form == nullptr) {
            throw UserError(quotedWord(words.front()) + " is not a command.");
        }
        const std::size_t begin = image_.size();
        put(static_cast<uint8_t>(form->opcode));
        putOperands(*form, operands);
        // The command may change the sizes of the values that follow.
        if (const auto command = readCommand(*form, std::span(image_).subspan(begin), sizes_)) {
            sizes_.take(*command);
        }
    }

    std::vector<uint8_t> takeImage() { return std::move(image_); }

  private:
    void putOperands(const CommandForm& form, Words operands) {
        if (form.operands == Operands::steps) {
            putSteps(form, operands);
            return;
        }
        requireOperands(form.name, operands, operandCount(form.operands));
        switch (form.operands) {
            case Operands::none:
            case Operands::steps:
                break;
            case Operands::byte:
                put(parseByte(operands[0]));
                break;
            case Operands::number:
                putNumber(parseNumber(operands[0], std::numeric_limits<uint32_t>::max()));
                break;
            case Operands::state:
                put(parseState(tapStateCode(operands[0]), operands[0]));
                break;
            case Operands::endState:
                put(parseState(endStateCode(form.opcode, operands[0]), operands[0]));
                break;
            case Operands::instruction:
                put(parseByte(operands[0]));
                putValue(operands[1], valueBytes(parseByte(operands[0])));
                break;
            case Operands::value:
            case Operands::twoValues:
                for (const std::string_view value : operands) {
                    putValue(value, sizes_.data);
                }
                break;
        }
    }

    void putSteps(const CommandForm& form, Words operands) {
        if (operands.empty() || operands.size() - 1 > kMostSteps) {
            throw UserError(std::string(form.name) + " takes its data and up to " +
                            std::to_string(kMostSteps) + " step values.");
        }
        putValue(operands[0], sizes_.data);
        put(static_cast<uint8_t>(operands.size() - 1));
        for (const std::string_view step : operands.subspan(1)) {
            putValue(step, sizes_.step);
        }
    }

    void putValue(std::string_view word, std::size_t bytes) {
        const std::vector<uint8_t> value = parseValue(word);
        const auto first = std::ranges::find_if(value, [](uint8_t byte) { return byte != 0; });
        const auto needed = static_cast<std::size_t>(value.end() - first);
        if (needed > bytes) {
            throw UserError("The value " + quotedWord(word) + " needs " + bytesText(needed) +
                            "; the size in force here is " + std::to_string(bytes) + ".");
        }
        if (image_.size() + bytes > mostBytes_) {
            throw UserError("The image would be longer than " + bytesText(mostBytes_) + ".");
        }
        image_.resize(image_.size() + bytes - needed);
        image_.insert(image_.end(), first, value.end());
    }

    void putBytes(std::string_view word) {
        const std::vector<uint8_t> bytes = parseValue(word);
        if (word.size() % 2 != 0) {
            throw UserError(std::string(kBytesLine) + " takes two digits for each byte.");
        }
        image_.insert(image_.end(), bytes.begin(), bytes.end());
    }

    void putNumber(uint32_t number) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            put(static_cast<uint8_t>(number >> shift));
        }
    }

    void put(uint8_t byte) { image_.push_back(byte); }

    std::size_t mostBytes_;
    std::vector<uint8_t> image_;
    ValueSizes sizes_;
};

}  // namespace

std::vector<uint8_t> assemble(std::string_view listing, const std::string& name, std::size_t mostBytes) {
    ImageWriter writer(mostBytes);
    if (listing.starts_with(kByteOrderMark)) {
        listing.remove_prefix(kByteOrderMark.size());
    }
    std::size_t line = 0;
    while (!listing.empty()) {
        ++line;
        // Some editors end a line with CR, or with CR and LF.
        const std::size_t length = std::min(listing.find_first_of("\r\n"), listing.size());
        const auto words = listingWords(listing.substr(0, length));
        try {
            if (!words.empty()) {
                writer.take(words);
            }
        } catch (const UserError& error) {
            throw UserError(name + ", line " + std::to_string(line) + ": " + error.what());
        }
        listing.remove_prefix(length);
        listing.remove_prefix(listing.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, listing.size()));
    }
    return writer.takeImage();
}

}  // namespace images
