#include "app/logic/CardTexts.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "app/logic/CardModel.h"
#include "app/logic/WriteTime.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

TEST(CardModel, EveryModelHasItsName) {
    const std::pair<uint16_t, const char*> models[] = {{0x20, "VornMX-A"}, {0x21, "VornMX-B"},
                                                       {0x22, "VornMX-C"}, {0x23, "Vorn K40"},
                                                       {0x24, "Vorn DX8"}, {0x25, "Vorn DX8-XS"}};
    for (const auto& [code, name] : models) {
        EXPECT_TRUE(IsModelCode(code));
        EXPECT_EQ(ModelName(code), name);
    }
    EXPECT_FALSE(IsModelCode(0x1F));
    EXPECT_FALSE(IsModelCode(0x26));
}

TEST(CardTexts, RegistersReadAsTexts) {
    EXPECT_EQ(BoardRevisionText(0), "NC");
    EXPECT_EQ(BoardRevisionText(2), "B");
    EXPECT_EQ(FirmwareVersionText(ByteOrderLetter(0), 7), "M7");
    EXPECT_EQ(FirmwareVersionText(ByteOrderLetter(1), 255), "W255");
    EXPECT_EQ(FirmwareDateText(0x6311), "Mar 17, 2006");
    // A month that there is not, 0 included, shows as December; the day is not checked.
    EXPECT_EQ(FirmwareDateText(0x500F), "Dec 15, 2005");
    EXPECT_EQ(FirmwareDateText(0xFD00), "Dec 00, 2015");
}

TEST(WriteTime, IsRoundedAsAPersonWouldSayIt) {
    const std::pair<double, const char*> durations[] = {
        {1, "less than a minute"},         {44, "less than a minute"}, {46, "about a minute"},
        {92, "about a minute and a half"}, {106, "about 2 minutes"},   {149, "about 2 minutes"},
        {151, "about 3 minutes"},          {3600, "about 60 minutes"}};
    for (const auto& [seconds, text] : durations) {
        EXPECT_EQ(RoundedDuration(seconds), text) << seconds;
    }
}

TEST(WriteTime, IsToldForAFileOfAnImagesSizeAlone) {
    constexpr uintmax_t largest = 16 * 1024 * 1024;
    const TemporaryDirectory directory;
    const std::string image = directory.path() / "VMBM12A.xsv";
    std::ofstream(image).put(0);
    for (const uintmax_t size : {uintmax_t{1}, largest, largest + 1}) {
        std::filesystem::resize_file(image, size);
        EXPECT_EQ(WriteTimeText(image.c_str()), size > largest ? "" : "Writing takes less than a minute.");
    }
    std::filesystem::remove(image);
    ASSERT_EQ(::mkfifo(image.c_str(), 0600), 0);
    ::alarm(20);  // Opening a pipe waits for whoever writes.
    EXPECT_EQ(WriteTimeText(image.c_str()), "");
    ::alarm(0);
}

}  // namespace
