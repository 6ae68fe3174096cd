#pragma once

// Months as the cards' dates use them: three-letter names, and no leap years.

#include <cstdint>
#include <string>

namespace catalogue {

inline constexpr int kMonths = 12;
inline constexpr int kDaysInYear = 365;

// Cards store a year as the number of years since this one, in four bits.
inline constexpr int kFirstYear = 2000;
inline constexpr int kLastYear = kFirstYear + 15;

extern const char* const gpMonths[kMonths];
extern const uint16_t gMonthDays[kMonths];

// "Feb 12, 2003" for month index 1 (January is 0), which must be below kMonths.
std::string dateText(int month, int day, int year);

}  // namespace catalogue
