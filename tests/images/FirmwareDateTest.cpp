#include "images/FirmwareDate.h"

#include <gtest/gtest.h>

namespace {

TEST(FirmwareDate, IsADateThatTheRegisterCanHold) {
    EXPECT_EQ(images::firmwareDate("2006-03-17"), 0x6311);
    EXPECT_EQ(images::firmwareDate("2004-02-29"), 0x421D);
    for (const char* text : {"", "2006-3-17", "2006/03/17", "1999-12-31", "2016-01-01", "2006-02-29",
                             "2006-13-01", "2006-00-10", "2006-01-0x", "+006-01-01"}) {
        EXPECT_FALSE(images::firmwareDate(text)) << text;
        EXPECT_FALSE(images::firmwareDateFault(text).empty()) << text;
    }
    EXPECT_EQ(images::firmwareDateText(0x6311), "2006-03-17");
    EXPECT_FALSE(images::firmwareDateText(0x6011) || images::firmwareDateText(0x6D11)) << "no such month";
}

}  // namespace
