#include "catalogue/Numbers.h"

#include <array>
#include <charconv>

namespace catalogue {

std::string paddedNumber(uint32_t number, std::size_t digits, int base) {
    std::array<char, 32> buffer{};  // enough for every base
    const auto end = std::to_chars(buffer.begin(), buffer.end(), number, base).ptr;
    const std::string text(buffer.begin(), end);
    return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

std::optional<uint32_t> wholeNumber(std::string_view text, int base) {
    uint32_t number = 0;
    const char* const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, number, base);
    return error == std::errc() && end == textEnd ? std::optional(number) : std::nullopt;
}

uint32_t leadingNumber(std::string_view text, int base) {
    uint32_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, base);
    return number;
}

}  // namespace catalogue
