#include "images/FirmwareDate.h"

#include <charconv>
#include <chrono>

namespace images {

namespace {

constexpr unsigned kFirstYear = 2000;
constexpr unsigned kLastYear = 2015;
constexpr unsigned kMonths = 12;

std::optional<unsigned> digits(std::string_view text) {
    unsigned number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return number;
}

// The date that such a text means, be it in the calendar or not.
std::optional<std::chrono::year_month_day> dateNamed(std::string_view text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') {
        return std::nullopt;
    }
    const auto year = digits(text.substr(0, 4));
    const auto month = digits(text.substr(5, 2));
    const auto day = digits(text.substr(8, 2));
    if (!year || !month || !day || *year < kFirstYear || *year > kLastYear) {
        return std::nullopt;
    }
    return std::chrono::year_month_day(std::chrono::year(static_cast<int>(*year)), std::chrono::month(*month),
                                       std::chrono::day(*day));
}

}  // namespace

std::optional<uint16_t> firmwareDate(std::string_view text) {
    const auto date = dateNamed(text);
    if (!date || !date->ok()) {
        return std::nullopt;
    }
    const auto year = static_cast<unsigned>(static_cast<int>(date->year()));
    return static_cast<uint16_t>((year - kFirstYear) << 12 | static_cast<unsigned>(date->month()) << 8 |
                                 static_cast<unsigned>(date->day()));
}

std::string firmwareDateFault(std::string_view text) {
    const auto date = dateNamed(text);
    if (!date) {
        return "A date is written as YYYY-MM-DD, such as 2006-03-17, and lies in 2000 to 2015.";
    }
    return date->ok() ? "" : "There is no " + std::string(text) + " in the calendar.";
}

std::optional<std::string> firmwareDateText(uint16_t date) {
    const unsigned month = date >> 8 & 0xF;
    if (month < 1 || month > kMonths) {
        return std::nullopt;
    }
    const auto twoDigits = [](unsigned number) {
        return std::string{'-', static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
    };
    return std::to_string(kFirstYear + (date >> 12)) + twoDigits(month) + twoDigits(date & 0x1F);
}

}  // namespace images
