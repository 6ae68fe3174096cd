#include "catalogue/Calendar.h"

#include "catalogue/Numbers.h"

namespace catalogue {

const char* const gpMonths[kMonths] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const uint16_t gMonthDays[kMonths] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

std::string dateText(int month, int day, int year) {
    return std::string(gpMonths[month]) + ' ' + paddedNumber(static_cast<uint32_t>(day), 2) + ", " +
           paddedNumber(static_cast<uint32_t>(year), 4);
}

}  // namespace catalogue
