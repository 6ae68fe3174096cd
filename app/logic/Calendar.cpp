#include "app/logic/Calendar.h"

#include "app/logic/FormatText.h"

const char* const gpMonths[kMonths] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const uint16_t gMonthDays[kMonths] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

std::string DateText(int month, int day, int year) {
    return FormatText("%s %02d, %04d", gpMonths[month], day, year);
}
