#include "simulator/jtag/Prom.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tests/simulator/Probe.h"

namespace simulator {

class PromTest : public ProbedMachineTest {
  protected:
    // Advances the clock instead of making the accesses that an erase takes.
    void erase(uint64_t microseconds = 15'000'000) {
        probe_->instruction(Prom::eraseInstruction);
        machine_.clock().advance(microseconds * 3);
        probe_->instruction(Prom::bypassInstruction);
    }
};

using Misuses = std::vector<Misuse>;

TEST_F(PromTest, ReadsItsContent) {
    EXPECT_EQ(probe_->userCode(0), 0x21307015U);
    card().cells().setProtection(5);
    EXPECT_EQ(probe_->scanRegister(Prom::controlReadInstruction, 0, 3), 5U);
    const auto readPage = [&](uint32_t address) {
        probe_->address(address);
        return probe_->scanPage(Prom::readPageInstruction, std::vector<uint8_t>(kPageBytes));
    };
    EXPECT_EQ(readPage(0), cellsOf(0));
    EXPECT_EQ(readPage(511 * 0x20), cellsOf(511));
    EXPECT_EQ(readPage(511 * 0x20 + 1), std::vector<uint8_t>(kPageBytes, 0xFF)) << "no page there";
}

TEST_F(PromTest, RegistersCaptureWhatWasLoadedAndSurviveReset) {
    const auto page = cellsOf(77);
    const auto load = [&] {
        return std::vector<uint32_t>{probe_->address(0x8000), probe_->enterProgramming(),
                                     probe_->controlData(6)};
    };
    EXPECT_EQ(load(), (std::vector<uint32_t>{0, 0, 0}));
    probe_->scanPage(Prom::pageDataInstruction, page);
    probe_->reset();
    EXPECT_TRUE(chain().prom().state().programmingMode);
    EXPECT_EQ(load(), (std::vector<uint32_t>{0x8000, 0x34, 6}));
    EXPECT_EQ(probe_->scanPage(Prom::pageDataInstruction, page), page);
}

TEST_F(PromTest, ProgrammingOnlyTurnsOnesIntoZeros) {
    auto expected = cellsOf(4);
    const auto data = cellsOf(77);
    std::ranges::transform(expected, data, expected.begin(), std::bit_and<>());
    probe_->enterProgramming();
    probe_->programPage(4, data);
    EXPECT_EQ(cellsOf(4), expected);
    EXPECT_EQ(misuses(), Misuses{Misuse::programmedTwice});
}

// Run-Test/Idle lasts from one rising edge to the next: the wait and three stores.
TEST_F(PromTest, OneAccessTooFewDamagesTheRow) {
    probe_->enterProgramming();
    probe_->address(0x8000);
    for (const bool enough : {false, true}) {
        probe_->userCode(0x12345678);
        probe_->instruction(Prom::programInstruction);
        probe_->wait(14000, enough ? 3 : 4);
        probe_->instruction(Prom::bypassInstruction);
        EXPECT_EQ(card().identity() == 0x12345678, enough);
    }
    EXPECT_EQ(misuses(), Misuses{Misuse::shortWait});
}

TEST_F(PromTest, LeavingEarlyDamagesEveryKindOfRow) {
    probe_->enterProgramming();
    probe_->programUserCode(0x12345678, 13000);
    probe_->controlData(2);
    probe_->program(13000);
    const auto damaged = card().identity();
    EXPECT_NE(damaged, 0x12345678U);
    EXPECT_NE(card().protection(), 2);

    erase(14'900'000);
    EXPECT_LT(std::ranges::count(card().cells().pages(), 0xFF), 0.9 * kPromBytes);
    EXPECT_NE(card().identity(), 0xFFFFFFFFU);

    probe_->userCode(0x12345678);
    probe_->enter(Probe::Scan::instruction);
    probe_->shift(Probe::bitsOf(Prom::programInstruction << 5 | 0x1F, 13));
    probe_->clocks({1, 1});  // Update-IR and Select-DR-Scan, past Run-Test/Idle
    EXPECT_EQ(card().identity(), damaged) << "the same damage every time";
    EXPECT_EQ(misuses(), Misuses(4, Misuse::shortWait));
}

TEST_F(PromTest, OperationsTakeEffectInTime) {
    probe_->enterProgramming();
    erase();
    EXPECT_EQ(card().identity(), 0xFFFFFFFFU);
    EXPECT_EQ(card().protection(), 7);
    probe_->address(0x8000);
    for (const uint8_t protection : {uint8_t{3}, uint8_t{4}}) {
        probe_->controlData(protection);
        probe_->program();
        EXPECT_EQ(card().protection(), protection) << "replaced, not only cleared";
    }
    for (const uint64_t microseconds : {3990U, 4000U, 0U}) {  // the last time, the mode is already left
        probe_->operate(Prom::leaveProgrammingInstruction, microseconds);
        EXPECT_EQ(chain().prom().state().programmingMode, microseconds == 3990);
    }
    EXPECT_EQ(misuses(), Misuses{Misuse::shortWait});
}

TEST_F(PromTest, WritesOnlyExistingRowsInProgrammingMode) {
    const std::vector<uint8_t> before(card().cells().bytes().begin(), card().cells().bytes().end());
    probe_->programUserCode(0);
    erase();
    EXPECT_EQ(misuses(), Misuses(2, Misuse::outsideProgrammingMode));
    machine_.ledger().restore({});

    probe_->enterProgramming();
    for (const uint32_t address : {0x0U, 0x20U, 0x4000U, 0x8000U, 0x4001U, 0x21U}) {
        if (address == 0x8000) {  // has no row for page data; the addresses before have none for a user code
            probe_->scanPage(Prom::pageDataInstruction, cellsOf(77));
        }
        probe_->address(address);
        probe_->program();
    }
    EXPECT_EQ(misuses(), Misuses(6, Misuse::noSuchRow));
    EXPECT_TRUE(std::ranges::equal(card().cells().bytes(), before));
}

}  // namespace simulator
