#include "images/FirmwareDate.h"

#include <array>
#include <charconv>
#include <chrono>

namespace images {

namespace {

constexpr unsigned kFirstYear = 2000;
constexpr unsigned kLastYear = 2015;
constexpr std::array kMonthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::optional<unsigned> digits(std::string_view text) {
    unsigned number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return number;
}

}  // namespace

std::optional<uint16_t> firmwareDate(std::string_view text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') {
        return std::nullopt;
    }
    const auto year = digits(text.substr(0, 4));
    const auto month = digits(text.substr(5, 2));
    const auto day = digits(text.substr(8, 2));
    if (!year || !month || !day || *year < kFirstYear || *year > kLastYear) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(*year)),
                                           std::chrono::month(*month), std::chrono::day(*day)};
    if (!date.ok()) {
        return std::nullopt;
    }
    return static_cast<uint16_t>((*year - kFirstYear) << 12 | *month << 8 | *day);
}

std::optional<std::string> firmwareDateText(uint16_t date) {
    const unsigned month = date >> 8 & 0xF;
    if (month < 1 || month > kMonthNames.size()) {
        return std::nullopt;
    }
    return std::to_string(date & 0x1F) + ' ' + kMonthNames[month - 1] + ' ' +
           std::to_string(kFirstYear + (date >> 12));
}

}  // namespace images
