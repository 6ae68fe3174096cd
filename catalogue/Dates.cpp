#include "catalogue/Dates.h"

#include <chrono>

#include "catalogue/Numbers.h"

namespace catalogue {

const char* const gpMonths[kMonths] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const uint16_t gMonthDays[kMonths] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

namespace {

constexpr uint32_t kFirstYear = 2000;
constexpr uint32_t kLastYear = kFirstYear + 15;
constexpr uint32_t kDaysInYear = 365;

uint32_t yearOf(uint16_t date) {
    return kFirstYear + (date >> 12);
}

uint32_t monthOf(uint16_t date) {
    return date >> 8 & 0xF;
}

uint32_t dayOf(uint16_t date) {
    return date & 0x1F;
}

bool isMonth(uint32_t month) {
    return month >= 1 && month <= kMonths;
}

std::string dateText(uint32_t month, uint32_t day, uint32_t year) {
    return std::string(gpMonths[month - 1]) + ' ' + paddedNumber(day, 2) + ", " + paddedNumber(year, 4);
}

// The date that a text in the right form means, whether or not it is in the calendar.
std::optional<std::chrono::year_month_day> readDate(std::string_view text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') {
        return std::nullopt;
    }
    const auto year = wholeNumber(text.substr(0, 4));
    const auto month = wholeNumber(text.substr(5, 2));
    const auto day = wholeNumber(text.substr(8, 2));
    if (!year || !month || !day || *year < kFirstYear || *year > kLastYear) {
        return std::nullopt;
    }
    return std::chrono::year_month_day(std::chrono::year(static_cast<int>(*year)), std::chrono::month(*month),
                                       std::chrono::day(*day));
}

}  // namespace

std::string firmwareDateText(uint16_t date) {
    const uint32_t month = monthOf(date);
    return dateText(isMonth(month) ? month : kMonths, dayOf(date), yearOf(date));
}

std::optional<std::string> isoFirmwareDateText(uint16_t date) {
    if (!isMonth(monthOf(date))) {
        return std::nullopt;
    }
    return paddedNumber(yearOf(date), 4) + '-' + paddedNumber(monthOf(date), 2) + '-' +
           paddedNumber(dayOf(date), 2);
}

std::optional<uint16_t> parseFirmwareDate(std::string_view text) {
    const auto date = readDate(text);
    if (!date || !date->ok()) {
        return std::nullopt;
    }
    const uint32_t year = static_cast<uint32_t>(static_cast<int>(date->year())) - kFirstYear;
    return static_cast<uint16_t>(year << 12 | static_cast<unsigned>(date->month()) << 8 |
                                 static_cast<unsigned>(date->day()));
}

std::string firmwareDateFault(std::string_view text) {
    const auto date = readDate(text);
    if (!date) {
        return "A date is written as YYYY-MM-DD, such as 2006-03-17, and lies in 2000 to 2015.";
    }
    return date->ok() ? "" : "There is no " + std::string(text) + " in the calendar.";
}

std::string weekDateText(uint32_t week, uint32_t yearsAfter2000) {
    // The first day of the week, counted from 1. Week 0 wraps to a day that no year has.
    uint32_t day = week * 7 - 6;
    if (day > kDaysInYear) {
        return "Unknown!";
    }
    uint32_t month = 1;
    while (month < kMonths && day >= gMonthDays[month - 1]) {
        day -= gMonthDays[month - 1];
        ++month;
    }
    return dateText(month, day, kFirstYear + yearsAfter2000);
}

}  // namespace catalogue
