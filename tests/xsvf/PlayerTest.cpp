#include "xsvf/Player.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/xsvf/FakePort.h"

namespace {

// An image, and what the player makes of it.
struct Run {
    const char* image;
    std::string log;
    int32_t error, commands;
    std::deque<uint8_t> tdo = {};
};

void expectRuns(std::initializer_list<Run> runs) {
    for (const Run& run : runs) {
        FakePort port;
        port.tdo = run.tdo;
        const auto info = played(bytesOf(run.image));
        std::string log = run.log;
        std::erase(log, ' ');
        EXPECT_EQ(port.log, log) << run.image;
        EXPECT_EQ(info.iResult, run.error) << run.image;
        EXPECT_EQ(info.lCommandsRead, run.commands) << run.image;
    }
}

TEST(PlayerTest, EndsAtCompletionOrTheFirstIllegalCommand) {
    expectRuns({
        {"00", "11111", 0, 1},
        {"05", "11111", 4, 1},
        {"06", "11111", 4, 1},
        {"12 01 15", "11111 0", 4, 2},
        {"13 02", "11111", 5, 1},
        {"14 FF", "11111", 5, 1},
        {"12 01 12 12", "11111 0", 5, 2},
        {"08 00 00 1F 40 00", "11111", 0, 2},
        {"08 00 00 1F 41", "11111", 6, 1},
    });
}

TEST(PlayerTest, ScansAndWaits) {
    expectRuns({
        // Least significant bit first; TDO is sampled before each clock.
        {"12 01 02 0D F5 C6 00", "11111 0 1100 0oo000ooo0o0i io", 0, 3},
        {"08 00 00 00 0A 09 02 A5 03 0D 00", "11111 0100 sos0sos0s0sos0sos0si io", 0, 3},
        // Both end in a Pause state; a scan of no bits only waits.
        {"13 01 14 01 02 01 01 08 00 00 00 01 0E 01 04 00 00 00 07 02 00 00",
         "11111 01100 io iiioo io iio w7", 0, 8},
        // A scan in parts stays open. Neither its parts nor its end wait, compared or not.
        {"04 00 00 00 09 08 00 00 00 02 0C 01 0D 02 0E 03 0F 01 00 10 02 00 11 03 00 00",
         "11111 0100 o0 0o oi io ioo sos0 s0so sosi io", 0, 9},
        // A negative wait goes to Run-Test/Idle too.
        {"04 80 00 00 00 13 01 02 01 01 00", "11111 01100 io iio w-2147483648", 0, 4},
        // The end state goes back to Run-Test/Idle.
        {"12 01 14 01 14 00 08 00 00 00 01 0E 01 00", "11111 0 100 i io", 0, 6},
        // A negative bit count shifts nothing.
        {"08 FF FF FF F9 09 00", "11111 0100 110", 0, 3},
    });
}

TEST(PlayerTest, ComparesAndRetries) {
    expectRuns({
        // Compared under the mask; with what an earlier command expected; in parts without the mask.
        {"08 00 00 00 01 01 01 09 00 01", "11111 0100 s 110", 2, 3},
        {"08 00 00 00 01 01 01 09 00 01 00", "11111 0100 s 110", 0, 4, {1}},
        {"08 00 00 00 01 09 00 01 01 01 03 00", "11111 0100 s 110 100 s 110", 2, 4},
        {"07 01 08 00 00 00 01 0F 00 01", "11111 0100 s 0", 2, 3},
        // Retries pass through Pause-DR when they wait, and wait longer each time.
        {"07 01 08 00 00 00 01 01 01 09 00 01", "11111 0100 s 110 100 s 110", 3, 4},
        {"04 00 00 00 05 08 00 00 00 01 01 01 09 00 01", "11111 0100 s 110 w5", 2, 4},
        {"07 03 04 00 00 03 E8 08 00 00 00 01 01 01 09 00 01",
         "11111 0100 s 1010 110 w1250 100 s 1010 110 w1562 100 s 1010 110 w1952 100 s 110 w1952", 3, 5},
        {"07 03 04 00 00 03 E8 08 00 00 00 01 01 01 09 00 01 02 00 00",
         "11111 0100 s 1010 110 w1250 100 s 110 w1250 w1000",
         0,
         7,
         {0, 1}},
    });
}

TEST(PlayerTest, StepsThroughValues) {
    expectRuns({
        // Data 0F, increment 01, new data in the high four bits: then 50 and A1.
        {"08 00 00 00 08 0A 01 F0 0B 0F 02 05 0A 00",
         "11111 0100 sososos o s0s0s0s110 100 s0s0s0s0 sos0sos110 100 sos0s0s0 s0sos0si io", 0, 4},
        // The increment's carry runs through the bytes and is lost.
        {"08 00 00 00 10 0A 00 01 F0 00 0B FF FF 01 05 00",
         "11111 0100 sosososososososososososososososi io ioo s0s0s0s0s0s0s0s0 s0s0s0s0sos0sos1 10", 0, 4},
        // A scan that fails ends the steps: at the first value, whose steps are not read, and at step 1 of 2.
        {"08 00 00 00 01 0A 00 01 01 01 09 00 00 0B 01 01 01 00", "11111 0100 s 110 100 s iio", 2, 5, {0, 1}},
        {"08 00 00 00 01 0A 00 01 01 01 09 00 00 0B 01 02 01 00 00",
         "11111 0100 s 110 100 s iio ioo s iio",
         2,
         5,
         {0, 0, 1}},
        // New data of more than a byte begins with its least significant one.
        {"08 00 00 00 10 0A 00 00 FF FF 0B 00 00 01 01 80 00",
         "11111 0100 s0s0s0s0s0s0s0s0 s0s0s0s0s0s0s0s110 100 s0s0s0s0s0s0s0so sos0s0s0s0s0s0s110", 0, 4},
    });
}

TEST(PlayerTest, RecordsWhatItReadAndCaptured) {
    FakePort port;
    port.tdo = {1, 0, 1, 1, 0, 0, 0, 0, 1, 1};
    const auto info =
        played(bytesOf("07 08 13 01 04 00 00 00 03 08 00 00 00 0A 01 FF FF 09 02 A5 03 0D 14 09"));
    EXPECT_EQ(value(&info.lvCaptured), 0x030DU);
    EXPECT_EQ(info.ucDrEndState, 9);
    EXPECT_EQ(played(bytesOf("08 00 00 1F 41")).sDrBytes, MAX_LEN + 1);
    EXPECT_STREQ(xsvfErrorText(info.iResult), "ERROR:  Illegal state specification");
    EXPECT_STREQ(xsvfErrorText(kXsvfMaxRetries), "ERROR:  TDO mismatch and exceeded max retries");

    // A second run does not depend on the first.
    auto again = info;
    auto completed = bytesOf("00");
    DoXsvf(&again, completed.data(), 1, nullptr, nullptr);
    const tagSXsvfInfo fresh;
    EXPECT_EQ(again.lCommandsRead, 1);
    EXPECT_EQ(again.ucIsComplete, 1);
    for (const auto field :
         {&tagSXsvfInfo::lWaitMicroseconds, &tagSXsvfInfo::lDrBits, &tagSXsvfInfo::iResult}) {
        EXPECT_EQ(again.*field, 0);
    }
    for (const auto field :
         {&tagSXsvfInfo::ucOpcode, &tagSXsvfInfo::ucCurrentState, &tagSXsvfInfo::ucIrEndState,
          &tagSXsvfInfo::ucDrEndState, &tagSXsvfInfo::ucRetryLimit}) {
        EXPECT_EQ(again.*field, fresh.*field);
    }
    EXPECT_EQ(again.sDrBytes, 0);
}

TEST(PlayerTest, CountsAttemptsInOneByte) {
    FakePort port;
    EXPECT_EQ(played(bytesOf("07 FF 08 00 00 00 01 01 01 09 00 01")).iResult, kXsvfTdoMismatch);
    EXPECT_EQ(std::count(port.log.begin(), port.log.end(), 's'), 256);
}

TEST(PlayerTest, RefusesDataMasksItCannotIndex) {
    const FakePort port;
    for (const std::size_t bytes : {255U, 256U}) {
        std::vector<uint8_t> image{0x08, 0, 0, 0x07, static_cast<uint8_t>(bytes == 255 ? 0xF8 : 0xFF), 0x0A};
        image.resize(image.size() + 2 * bytes);
        image.push_back(0x0B);
        image.resize(image.size() + bytes + 2);
        EXPECT_EQ(played(image).iResult, bytes == 255 ? kXsvfNoError : kXsvfDataOverflow);
    }
}

TEST(PlayerTest, SurvivesSizesThatDoNotFit) {
    FakePort port;
    // 65536 bytes count as 0: every bit is shifted as 0 and none is kept.
    EXPECT_EQ(played(bytesOf("08 00 08 00 00 0F 00")).lvCaptured.sByteCount, 0);
    EXPECT_EQ(std::count(port.log.begin(), port.log.end(), '0'), 3 + 524288);
}

}  // namespace
