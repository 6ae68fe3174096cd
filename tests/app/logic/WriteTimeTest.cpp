#include "app/logic/WriteTime.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "tests/support/TemporaryDirectory.h"

namespace {

TEST(WriteTimeTest, IsRoundedAsInSpeech) {
    const std::pair<double, const char*> durations[] = {
        {1, "less than a minute"},         {44, "less than a minute"}, {46, "about a minute"},
        {92, "about a minute and a half"}, {106, "about 2 minutes"},   {149, "about 2 minutes"},
        {151, "about 3 minutes"},          {3600, "about 60 minutes"}};
    for (const auto& [seconds, text] : durations) {
        EXPECT_EQ(RoundedDuration(seconds), text) << seconds;
    }
}

TEST(WriteTimeTest, IsGivenOnlyForAFileOfPlausibleSize) {
    constexpr uintmax_t largest = 0x100'0000;
    const TemporaryDirectory directory;
    const std::string image = directory.path() / "VMBM12A.xsv";
    std::ofstream(image).put(0);
    for (const uintmax_t size : {uintmax_t{1}, largest, largest + 1}) {
        std::filesystem::resize_file(image, size);
        EXPECT_EQ(WriteTimeText(image.c_str()), size > largest ? "" : "Writing takes less than a minute.");
    }
    std::filesystem::remove(image);
    ASSERT_EQ(::mkfifo(image.c_str(), 0600), 0);
    ::alarm(20);  // in case the call opens the pipe, which waits for a writer
    EXPECT_EQ(WriteTimeText(image.c_str()), "");
    ::alarm(0);
}

TEST(WriteTimeTest, CountsACommandThatIsLongerThanWhatIsReadAtOnce) {
    constexpr std::size_t longest = 0xFFFF;                     // bytes of one value
    std::string bytes{'\x08', '\x00', '\x07', '\xFF', '\xF8'};  // XSDRSIZE
    for (int command = 0; command < 10; ++command) {
        bytes += '\x03' + std::string(longest, '\x55');  // XSDR
    }
    const TemporaryDirectory directory;
    const std::string image = directory.path() / "VMBM12A.xsv";
    std::ofstream(image, std::ios::binary) << bytes << '\0';
    // 49 accesses for a bit, three in a microsecond: 86 seconds.
    EXPECT_EQ(WriteTimeText(image.c_str()), "Writing takes about a minute and a half.");
    EXPECT_EQ(WriteTimeText(image.c_str(), std::chrono::nanoseconds(1000)), "Writing takes about 4 minutes.");
    std::filesystem::resize_file(image, bytes.size());
    EXPECT_EQ(WriteTimeText(image.c_str()), "");
}

}  // namespace
