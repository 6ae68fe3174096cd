#pragma once

// Firmware dates, as a card's date register holds them and as people read and write them:
//
//   bits 12-15   year minus 2000
//   bits  8-11   month, January is 1
//   bits  0-4    day

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

// "Mar 17, 2006". A month that does not exist reads as December; the day is not checked.
std::string firmwareDateText(uint16_t date);

// "2006-03-17"; nothing for a month that does not exist.
std::optional<std::string> isoFirmwareDateText(uint16_t date);

// The date of a text such as "2006-03-17". Nothing for a text in another form, a day that is not in the
// calendar, or a year outside 2000 to 2015, which the register cannot hold.
std::optional<uint16_t> parseFirmwareDate(std::string_view text);

// What is wrong with such a text, in a sentence; empty for a good one.
std::string firmwareDateFault(std::string_view text);

}  // namespace catalogue
