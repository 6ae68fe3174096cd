#include "catalogue/Dates.h"

#include <gtest/gtest.h>

namespace catalogue {
namespace {

TEST(FirmwareDateTest, IsParsedAndFormatted) {
    EXPECT_EQ(parseFirmwareDate("2006-03-17"), 0x6311);
    EXPECT_EQ(parseFirmwareDate("2004-02-29"), 0x421D);
    for (const char* text : {"", "2006-3-17", "2006/03/17", "1999-12-31", "2016-01-01", "2006-02-29",
                             "2006-13-01", "2006-00-10", "2006-01-0x", "+006-01-01"}) {
        EXPECT_FALSE(parseFirmwareDate(text)) << text;
        EXPECT_FALSE(firmwareDateFault(text).empty()) << text;
    }
    EXPECT_EQ(firmwareDateText(0x6311), "Mar 17, 2006");
    EXPECT_EQ(isoFirmwareDateText(0x6311), "2006-03-17");
    // A month that does not exist, 0 included, shows as December; the day is not checked.
    EXPECT_EQ(firmwareDateText(0x500F), "Dec 15, 2005");
    EXPECT_EQ(firmwareDateText(0xFD00), "Dec 00, 2015");
    EXPECT_FALSE(isoFirmwareDateText(0x6011) || isoFirmwareDateText(0x6D11));
}

}  // namespace
}  // namespace catalogue
