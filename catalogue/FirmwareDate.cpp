#include "catalogue/FirmwareDate.h"

#include <chrono>

#include "catalogue/Calendar.h"
#include "catalogue/Numbers.h"

namespace catalogue {
namespace {

int yearOf(uint16_t date) {
    return kFirstYear + (date >> 12);
}

int monthOf(uint16_t date) {
    return date >> 8 & 0xF;
}

int dayOf(uint16_t date) {
    return date & 0x1F;
}

bool isMonth(int month) {
    return month >= 1 && month <= kMonths;
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
    const int month = monthOf(date);
    return dateText((isMonth(month) ? month : kMonths) - 1, dayOf(date), yearOf(date));
}

std::optional<std::string> isoFirmwareDateText(uint16_t date) {
    const int month = monthOf(date);
    if (!isMonth(month)) {
        return std::nullopt;
    }
    return paddedNumber(static_cast<uint32_t>(yearOf(date)), 4) + '-' +
           paddedNumber(static_cast<uint32_t>(month), 2) + '-' +
           paddedNumber(static_cast<uint32_t>(dayOf(date)), 2);
}

std::optional<uint16_t> parseFirmwareDate(std::string_view text) {
    const auto date = readDate(text);
    if (!date || !date->ok()) {
        return std::nullopt;
    }
    const auto yearsSinceFirst = static_cast<unsigned>(static_cast<int>(date->year()) - kFirstYear);
    return static_cast<uint16_t>(yearsSinceFirst << 12 | static_cast<unsigned>(date->month()) << 8 |
                                 static_cast<unsigned>(date->day()));
}

std::string firmwareDateFault(std::string_view text) {
    const auto date = readDate(text);
    if (!date) {
        return "A date is written as YYYY-MM-DD, such as 2006-03-17, and lies in 2000 to 2015.";
    }
    return date->ok() ? "" : "There is no " + std::string(text) + " in the calendar.";
}

}  // namespace catalogue
