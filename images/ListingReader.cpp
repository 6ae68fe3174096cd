#include "images/ListingReader.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include "images/ByteText.h"
#include "images/Command.h"
#include "images/Listing.h"
#include "images/ListingWords.h"
#include "images/TapStates.h"

namespace images {

namespace {

using Words = std::span<const std::string_view>;

constexpr std::size_t kMostSteps = 255;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

void requireOperands(std::string_view name, Words operands, std::size_t count) {
    if (operands.size() != count) {
        throw ListingRefusal{std::string(name) + " takes " + std::to_string(count) +
                             (count == 1 ? " operand, not " : " operands, not ") +
                             std::to_string(operands.size()) + "."};
    }
}

std::optional<uint8_t> endStateNamed(XsvfOpcode opcode, std::string_view name) {
    for (const uint8_t operand : {kXsvfEndIdle, kXsvfEndPause}) {
        if (name == endStateName(opcode, operand)) {
            return operand;
        }
    }
    return std::nullopt;
}

uint8_t stateOf(std::optional<uint8_t> named, std::string_view word) {
    if (named) {
        return *named;
    }
    if (word.front() < '0' || word.front() > '9') {
        throw ListingRefusal{quotedWord(word) + " is not a state that can stand here."};
    }
    return byteOf(word);
}

// Grows an image line by line.
class ImageWriter {
  public:
    explicit ImageWriter(std::size_t mostBytes) : mostBytes_(mostBytes) {}

    // Appends what the words say. Throws ListingRefusal.
    void take(Words words) {
        const Words operands = words.subspan(1);
        if (words.front() == kBytesLine) {
            requireOperands(kBytesLine, operands, 1);
            putBytes(operands[0]);
            return;
        }
        const CommandForm* const form = formNamed(words.front());
        if (form == nullptr) {
            throw ListingRefusal{quotedWord(words.front()) + " is not a command."};
        }
        const std::size_t begin = image_.size();
        put(static_cast<uint8_t>(form->opcode));
        putOperands(*form, operands);
        // Read back as a reader of the image will, for the sizes that it puts in force.
        if (const auto command = readCommand(*form, std::span(image_).subspan(begin), sizes_)) {
            sizes_.take(*command);
        }
    }

    std::vector<uint8_t> takeImage() { return std::move(image_); }

  private:
    void putOperands(const CommandForm& form, Words operands) {
        switch (form.operands) {
            case Operands::none:
                requireOperands(form.name, operands, 0);
                break;
            case Operands::byte:
                requireOperands(form.name, operands, 1);
                put(byteOf(operands[0]));
                break;
            case Operands::number:
                requireOperands(form.name, operands, 1);
                putNumber(numberOf(operands[0], std::numeric_limits<uint32_t>::max()));
                break;
            case Operands::state:
                requireOperands(form.name, operands, 1);
                put(stateOf(tapStateCode(operands[0]), operands[0]));
                break;
            case Operands::endState:
                requireOperands(form.name, operands, 1);
                put(stateOf(endStateNamed(form.opcode, operands[0]), operands[0]));
                break;
            case Operands::instruction: {
                requireOperands(form.name, operands, 2);
                const uint8_t bits = byteOf(operands[0]);
                put(bits);
                putValue(operands[1], valueBytes(bits));
                break;
            }
            case Operands::value:
                requireOperands(form.name, operands, 1);
                putValue(operands[0], sizes_.data);
                break;
            case Operands::twoValues:
                requireOperands(form.name, operands, 2);
                putValue(operands[0], sizes_.data);
                putValue(operands[1], sizes_.data);
                break;
            case Operands::steps:
                putSteps(form, operands);
                break;
        }
    }

    void putSteps(const CommandForm& form, Words operands) {
        if (operands.empty() || operands.size() - 1 > kMostSteps) {
            throw ListingRefusal{std::string(form.name) + " takes its data and up to " +
                                 std::to_string(kMostSteps) + " step values."};
        }
        putValue(operands[0], sizes_.data);
        put(static_cast<uint8_t>(operands.size() - 1));
        for (const std::string_view step : operands.subspan(1)) {
            putValue(step, sizes_.step);
        }
    }

    void putValue(std::string_view word, std::size_t bytes) {
        const std::vector<uint8_t> value = valueOf(word);
        const auto first = std::ranges::find_if(value, [](uint8_t byte) { return byte != 0; });
        const auto needed = static_cast<std::size_t>(value.end() - first);
        if (needed > bytes) {
            throw ListingRefusal{"The value " + quotedWord(word) + " needs " + bytesText(needed) +
                                 "; the size in force here is " + std::to_string(bytes) + "."};
        }
        if (image_.size() + bytes > mostBytes_) {
            throw ListingRefusal{"The image would be longer than " + bytesText(mostBytes_) + "."};
        }
        image_.resize(image_.size() + bytes - needed);
        image_.insert(image_.end(), first, value.end());
    }

    void putBytes(std::string_view word) {
        const std::vector<uint8_t> bytes = valueOf(word);
        if (word.size() % 2 != 0) {
            throw ListingRefusal{std::string(kBytesLine) + " takes two digits for every byte."};
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

std::variant<std::vector<uint8_t>, ListingError> imageOf(std::string_view listing, std::size_t mostBytes) {
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
        } catch (const ListingRefusal& refusal) {
            return ListingError{line, refusal.reason};
        }
        listing.remove_prefix(length);
        listing.remove_prefix(listing.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, listing.size()));
    }
    return writer.takeImage();
}

}  // namespace images
