#include "images/ListingWords.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "files/UserError.h"

namespace images {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kPrefix = "0x";
constexpr std::string_view kDigits = "0123456789ABCDEFabcdef";

bool isOffset(std::string_view word) {
    return word.size() > 1 && word.find_first_not_of(kDigits) == word.size() - 1 && word.back() == ':';
}

unsigned digitOf(char digit) {
    if (digit <= '9') {
        return static_cast<unsigned>(digit - '0');
    }
    return static_cast<unsigned>(digit - (digit < 'a' ? 'A' : 'a')) + 10;
}

}  // namespace

std::vector<std::string_view> listingWords(std::string_view line) {
    std::vector<std::string_view> words;
    std::string_view rest = line.substr(0, line.find(';'));
    for (std::size_t begin = 0; (begin = rest.find_first_not_of(kBlanks)) != std::string_view::npos;) {
        rest.remove_prefix(begin);
        words.push_back(rest.substr(0, rest.find_first_of(kBlanks)));
        rest.remove_prefix(words.back().size());
    }
    if (!words.empty() && isOffset(words.front())) {
        words.erase(words.begin());
    }
    return words;
}

std::string quotedWord(std::string_view word) {
    constexpr std::size_t kLongest = 40;
    std::string text(word.substr(0, kLongest));
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, '?');
    return '"' + text + (word.size() > kLongest ? "...\"" : "\"");
}

uint32_t parseNumber(std::string_view word, uint32_t most) {
    const bool isHexadecimal = word.starts_with(kPrefix);
    const std::string_view digits = isHexadecimal ? word.substr(kPrefix.size()) : word;
    const char* const end = digits.data() + digits.size();
    uint32_t number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, number, isHexadecimal ? 16 : 10);
    if (stop != end || error == std::errc::invalid_argument) {
        throw files::UserError(quotedWord(word) + " is not a number.");
    }
    if (error != std::errc() || number > most) {
        throw files::UserError(quotedWord(word) + " is more than " + std::to_string(most) +
                               ", which is the most allowed here.");
    }
    return number;
}

uint8_t parseByte(std::string_view word) {
    return static_cast<uint8_t>(parseNumber(word, std::numeric_limits<uint8_t>::max()));
}

std::vector<uint8_t> parseValue(std::string_view word) {
    const std::string_view digits = word.starts_with(kPrefix) ? word.substr(kPrefix.size()) : "";
    if (digits.empty() || digits.find_first_not_of(kDigits) != std::string_view::npos) {
        throw files::UserError(quotedWord(word) +
                               " is not a value; values are hexadecimal and begin with 0x.");
    }
    std::vector<uint8_t> bytes;
    bytes.reserve(digits.size() / 2 + 1);
    unsigned high = 0;
    for (std::size_t index = 0; index < digits.size(); ++index) {
        const unsigned digit = digitOf(digits[index]);
        if ((digits.size() - index) % 2 == 0) {
            high = digit << 4;
        } else {
            bytes.push_back(static_cast<uint8_t>(high | digit));
        }
    }
    return bytes;
}

}  // namespace images
