#include "hw/JtagPort.h"

#include <gtest/gtest.h>

#include "card/Registers.h"
#include "hw/ApplicationHooks.h"
#include "tests/support/FakeHost.h"
#include "xsvf/JtagPort.h"

// Where the calls to the application are recorded, in order: "event ", or a progress in bytes. Null if no
// test looks.
static std::string* recorded = nullptr;

void AllowNextEvent() {
    if (recorded != nullptr) {
        *recorded += "event ";
    }
}
void UpdateProgressBar(uint32_t bytes) {
    if (recorded != nullptr) {
        *recorded += std::to_string(bytes) + " ";
    }
}

namespace {

class JtagPortTest : public testing::Test {
  protected:
    JtagPortTest() {
        recorded = &asked_;
        gpRegisters = card_.window.data();
        openPort(image_.data(), 6000, RegisterAt(0x100), RegisterAt(0x108));
        card_.accesses.clear();
    }
    ~JtagPortTest() override { recorded = nullptr; }
    void TearDown() override { EXPECT_EQ(card_.accesses, expected_); }

    // A word written to the output register, and the reads that let the signal settle.
    void expectWord(uint32_t word, std::size_t reads = 15) {
        expected_.push_back({true, 0x100, word});
        expected_.insert(expected_.end(), reads, {false, 0x100, word});
    }

    std::string asked_;
    FakeHost card_;  // with a silent chain
    std::vector<FakeHost::Access> expected_;
    std::vector<uint8_t> image_ = std::vector<uint8_t>(6000, 0);
};

TEST_F(JtagPortTest, ShowsSignalsWithTheNextClockLevel) {
    for (const auto& [port, level] : {std::pair{1, 1}, {2, -7}, {2, 0}, {3, 1}, {-1, 1}}) {
        setPort(static_cast<int16_t>(port), static_cast<int16_t>(level));
    }
    EXPECT_TRUE(card_.accesses.empty());
    pulseClock();
    setPort(2, 256);
    setPort(0, 256);
    for (const uint32_t word : {0x28U, 0x68U, 0x28U, 0x78U}) {
        expectWord(word);
    }
}

TEST_F(JtagPortTest, SamplesWithOneReadAndWaitsWithThreePerMicrosecond) {
    for (const uint32_t word : {0x80U, 0xFFFFFF7FU}) {
        card_.window[0x108 / 4] = word;
        EXPECT_EQ(readTDOBit(), word == 0x80 ? 1 : 0);
        expected_.push_back({false, 0x108, word});
    }
    for (const int32_t microseconds : {0, INT32_MIN, 1, 14000}) {
        waitTime(microseconds);
    }
    expected_.insert(expected_.end(), 3 + 42000, {false, 0x100, 0x08});
}

TEST_F(JtagPortTest, YieldsToTheApplicationBetweenBytes) {
    const std::tuple<uint32_t, const char*, uint32_t> cases[] = {
        {999, "", 0x08},
        {1000, "event ", 0x08},
        {3000, "event event event 3000 ", 0},
        {6000, "event event event 3000 event event event 6000 ", 0x08}};
    for (const auto& [bytes, expectedOfIt, shadow] : cases) {
        for (uint8_t byte = 0; gulCurrentOffset < bytes;) {
            readByte(&byte);
        }
        EXPECT_EQ(asked_, expectedOfIt);
        EXPECT_EQ(gulControlReg, shadow);
    }
}

TEST_F(JtagPortTest, RunsFromIdleWordToIdleWord) {
    tagSXsvfInfo info;
    PlayOnCard(&info, image_.data(), 1);
    expectWord(0x08, 0);
    for (int word = 0; word < 15; ++word) {
        expectWord(word % 3 == 1 ? 0x68 : 0x28);
    }
    expectWord(0x08, 0);
    EXPECT_EQ(gulControlReg, 0x28U);
}

}  // namespace
