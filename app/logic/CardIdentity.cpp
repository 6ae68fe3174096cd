#include "app/logic/CardIdentity.h"

#include "app/logic/Calendar.h"
#include "app/logic/FormatText.h"

namespace {

constexpr uint32_t kNoIdentity = 0;
// What an erased user code reads as: all ones, less the top bit.
constexpr uint32_t kErasedIdentity = 0x7FFFFFFF;

uint32_t yearOf(uint32_t identity) {
    return identity >> 20 & 0xF;
}

uint32_t weekOf(uint32_t identity) {
    return identity >> 12 & 0xFF;
}

uint32_t unitOf(uint32_t identity) {
    return identity & 0xFFF;
}

}  // namespace

bool IsBlankIdentity(uint32_t identity) {
    return identity == kNoIdentity || identity == kErasedIdentity;
}

uint16_t IdentityModelCode(uint32_t identity) {
    return static_cast<uint16_t>(identity >> 24);
}

std::string SerialNumberText(uint32_t identity) {
    return FormatText("%02x%02u%02u%04u", IdentityModelCode(identity), yearOf(identity), weekOf(identity),
                      unitOf(identity));
}

std::string ManufactureDateText(uint32_t identity) {
    // The first day of the week, counted from 1. Week 0 wraps to a day that no year has.
    auto day = static_cast<uint16_t>(weekOf(identity) * 7 - 6);
    if (identity == kNoIdentity || day < 1 || day > kDaysInYear) {
        return "Unknown!";
    }
    int month = 0;
    while (month < kMonths && day >= gMonthDays[month]) {
        day = static_cast<uint16_t>(day - gMonthDays[month]);
        ++month;
    }
    if (month == kMonths) {
        // Week 53 begins on the last day of the year.
        month = kMonths - 1;
        day = gMonthDays[month];
    }
    return DateText(month, day, static_cast<int>(yearOf(identity)) + kFirstYear);
}
