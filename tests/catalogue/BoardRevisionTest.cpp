#include "catalogue/BoardRevision.h"

#include <gtest/gtest.h>

#include "catalogue/FirmwareVersion.h"

namespace catalogue {
namespace {

TEST(BoardRevision, IsALetterOrNone) {
    EXPECT_EQ(boardRevisionText(0), "NC");
    EXPECT_EQ(boardRevisionText(2), "B");
    EXPECT_EQ(parseBoardRevision("NC"), 0);
    EXPECT_EQ(parseBoardRevision("Z"), 26);
    EXPECT_FALSE(parseBoardRevision("") || parseBoardRevision("a") || parseBoardRevision("AB"));
}

TEST(FirmwareVersion, IsAFlavourAndANumber) {
    EXPECT_EQ(firmwareVersionText('W', 255), "W255");
    EXPECT_EQ(parseFirmwareVersion("M07").value().number, 7);
    for (const char* text : {"", "M", "X7", "m7", "M100", "M-1", "M7 "}) {
        EXPECT_FALSE(parseFirmwareVersion(text)) << text;
    }
}

}  // namespace
}  // namespace catalogue
