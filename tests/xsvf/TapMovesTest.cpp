#include "xsvf/TapMoves.h"

#include <gtest/gtest.h>

#include "tests/xsvf/FakePort.h"

namespace {

void expectMove(uint8_t from, uint8_t to, const std::string& tms) {
    FakePort port;
    uint8_t state = from;
    if (xsvfGotoTapState(&state, to) == kXsvfIllegalState) {
        port.log += "error";
    }
    EXPECT_EQ(port.log, tms) << "from " << int{from} << " to " << int{to};
    EXPECT_EQ(state, to);
}

TEST(TapMovesTest, ClockTheExactPath) {
    const uint8_t states[] = {0x00, 0x01, 0x12, 0x14, 0x22, 0x24};
    // To:     reset    idle   Pause-DR Shift-DR Pause-IR Shift-IR
    const char* const moves[6][6] = {
        {"11111", "0", "error", "0100", "error", "01100"}, {"11111", "", "error", "100", "error", "1100"},
        {"11111", "110", "", "10", "error", "111100"},     {"11111", "110", "10", "", "error", "111100"},
        {"11111", "110", "error", "11100", "", "10"},      {"11111", "110", "error", "11100", "10", ""}};
    for (std::size_t from = 0; from < 6; ++from) {
        for (std::size_t to = 0; to < 6; ++to) {
            expectMove(states[from], states[to], moves[from][to]);
        }
    }
    // Other codes act by their flags.
    expectMove(0x01, 0x04, "100");
    expectMove(0x01, 0x60, "1100");
    expectMove(0x04, 0x14, "11100");
    expectMove(0x12, 0x10, "10");
}

}  // namespace
