#pragma once

// Numbers as they are written in names, dates and serial numbers: digits alone, without a sign.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

// "07" for 7 in two digits. A number that needs more digits gets them. Hexadecimal digits are lower case.
std::string paddedNumber(uint32_t number, std::size_t digits, int base = 10);

// The number that the whole text spells. Nothing if the text is empty or holds anything but digits.
std::optional<uint32_t> wholeNumber(std::string_view text, int base = 10);

// The number with which a text begins, up to the first character that is not a digit; 0 if there is none.
uint32_t leadingNumber(std::string_view text, int base = 10);

}  // namespace catalogue
