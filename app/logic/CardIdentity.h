#pragma once

// The card identity word, which is its serial number:
//
//   bits 24-31   model code
//   bits 20-23   year of manufacture minus 2000
//   bits 12-19   week of manufacture
//   bits  0-11   unit number

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

uint16_t IdentityModelCode(uint32_t identity);

// The ten characters printed on the card: model code in hexadecimal, then year, week and unit in decimal.
// 0x21307015 is "2103070021".
std::string SerialNumberText(uint32_t identity);

// The two characters with which the serial number of every card of a model begins.
std::string SerialNumberPrefix(uint16_t modelCode);

// The identity word of a serial number typed in that form (UTF-8), or nothing when it is not one: it must
// have ten characters and each field must be in its range. A field is read up to its first foreign character,
// so "1x" counts as 1.
std::optional<uint32_t> ParseSerialNumber(std::string_view text);

// "Feb 12, 2003", or "Unknown!" when the word is 0 or its week is not one of a year.
std::string ManufactureDateText(uint32_t identity);
