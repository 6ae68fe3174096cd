#pragma once

// The dates of a card: of its firmware, and of its manufacture.
//
// The firmware date register holds the day in bits 0-4, the month in bits 8-11 (January is 1) and the year
// minus 2000 in bits 12-15.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

inline constexpr int kMonths = 12;

// No leap years: that is how the cards' dates have always been counted.
extern const char* const gpMonths[kMonths];
extern const uint16_t gMonthDays[kMonths];

// "Mar 17, 2006". A month that does not exist reads as December; the day is not checked.
std::string firmwareDateText(uint16_t date);

// "2006-03-17"; nothing for a month that does not exist.
std::optional<std::string> isoFirmwareDateText(uint16_t date);

// The date of a text such as "2006-03-17". Nothing for a text in another form, a day that is not in the
// calendar, or a year outside 2000 to 2015, which the register cannot hold.
std::optional<uint16_t> parseFirmwareDate(std::string_view text);

// What is wrong with such a text, in a sentence; empty for a good one.
std::string firmwareDateFault(std::string_view text);

// "Feb 12, 2003", the first day of week 7, for 3 years after 2000. "Unknown!" for a week that no year has.
std::string weekDateText(uint32_t week, uint32_t yearsAfter2000);

}  // namespace catalogue
