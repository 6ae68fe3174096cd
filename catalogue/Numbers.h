#pragma once

// Numbers as they stand in names, dates and serial numbers: digits alone, without a sign.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

// "07" for 7 in two digits. A number that needs more digits gets them. Hexadecimal digits are lower case.
std::string paddedNumber(uint32_t number, std::size_t digits, int base = 10);

// The number that all of a text makes. Nothing if it holds anything but digits, or none.
std::optional<uint32_t> wholeNumber(std::string_view text, int base = 10);

// The number with which a text begins, up to the first character that is no digit; 0 if it begins with none.
uint32_t leadingNumber(std::string_view text, int base = 10);

}  // namespace catalogue
