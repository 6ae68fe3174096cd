#pragma once

// Months as the cards' dates use them: three-letter names, and no leap years.

#include <cstdint>
#include <string>

constexpr int kMonths = 12;
constexpr int kDaysInYear = 365;

// Years are stored as what is left after the century.
constexpr int kFirstYear = 2000;

extern const char* const gpMonths[kMonths];
extern const uint16_t gMonthDays[kMonths];

// "Feb 12, 2003" for month index 1 (January is 0), which must be below kMonths.
std::string DateText(int month, int day, int year);
