#include "simulator/Prom.h"

#include <gtest/gtest.h>

#include <bit>

#include "simulator/DefaultMachine.h"
#include "tests/simulator/Probe.h"

namespace simulator {
namespace {

// A page of its own look, with zeros and ones in every byte.
std::vector<uint8_t> patternPage(uint8_t seed) {
    std::vector<uint8_t> page(kPageBytes);
    for (std::size_t i = 0; i < page.size(); ++i)
        page[i] = static_cast<uint8_t>((i * 7 + seed) % 254 + 1);
    return page;
}

int differentBits(std::span<const uint8_t> left, std::span<const uint8_t> right) {
    int bits = 0;
    for (std::size_t i = 0; i < left.size(); ++i)
        bits += std::popcount(static_cast<unsigned>(left[i] ^ right[i]));
    return bits;
}

class PromTest : public testing::Test {
  protected:
    PromTest() {
        machine_.addCard({"VornMX-B", "PCI slot 1", 0x21, 1},
                         PromCells(encodeConfiguration({0x21, 1, 'M', 10, 0x4511}), 0x21307015, 5));
        machine_.powerOn();
        probe_.emplace(host_);
        probe_->reset();
    }

    [[nodiscard]] Card& card() { return machine_.card(0); }
    [[nodiscard]] std::vector<uint8_t> cellsOf(std::size_t page) {
        const auto bytes = card().cells().bytesOf(PromCells::page(page));
        return {bytes.begin(), bytes.end()};
    }
    // Lets time go by without the accesses that it takes.
    void skip(uint64_t microseconds) { machine_.clock().resume(machine_.accesses() + microseconds * 3); }
    void erase(uint64_t microseconds = 15'000'000) {
        probe_->instruction(Prom::eraseInstruction);
        skip(microseconds);
        probe_->instruction(Prom::bypassInstruction);
    }
    [[nodiscard]] std::vector<Misuse> misuses() {
        std::vector<Misuse> found;
        for (const auto& entry : machine_.ledger().entries())
            found.push_back(entry.misuse);
        return found;
    }

    Machine machine_;
    SimulatedHost host_{machine_, {}};
    std::optional<Probe> probe_;
};

using Misuses = std::vector<Misuse>;

TEST_F(PromTest, ReadsWhatItHolds) {
    EXPECT_EQ(probe_->userCode(), 0x21307015U);
    probe_->instruction(Prom::controlReadInstruction);
    EXPECT_EQ(probe_->data(0, 3), 5U);
    probe_->instruction(Prom::identificationInstruction);
    EXPECT_EQ(probe_->data(0, 32), 0xF5035093U);

    const std::vector<uint8_t> nothing(kPageBytes, 0);
    probe_->instruction(Prom::readPageInstruction);
    EXPECT_EQ(probe_->page(nothing), cellsOf(0));
    probe_->address(511 * 0x20);
    probe_->instruction(Prom::readPageInstruction);
    EXPECT_EQ(probe_->page(nothing), cellsOf(511));
    probe_->address(511 * 0x20 + 1);
    probe_->instruction(Prom::readPageInstruction);
    EXPECT_EQ(probe_->page(nothing), std::vector<uint8_t>(kPageBytes, 0xFF));
    EXPECT_TRUE(machine_.ledger().empty());
}

TEST_F(PromTest, RegistersCaptureWhatWasLoadedAndSurviveReset) {
    const auto page = patternPage(3);
    const auto load = [&] {
        std::vector<uint32_t> held{probe_->address(0x8000)};
        probe_->instruction(Prom::enterProgrammingInstruction);
        held.push_back(probe_->data(0x2D, 6));
        probe_->instruction(Prom::controlDataInstruction);
        held.push_back(probe_->data(6, 3));
        return held;
    };
    EXPECT_EQ(load(), (std::vector<uint32_t>{0, 0, 0}));
    probe_->loadPage(page);
    probe_->reset();
    EXPECT_EQ(load(), (std::vector<uint32_t>{0x8000, 0x2D, 6}));
    probe_->instruction(Prom::pageDataInstruction);
    EXPECT_EQ(probe_->page(page), page);
    EXPECT_TRUE(card().chain().prom().state().programmingMode);
}

// What an update does: erase, pages, identity three times over, protection, leave; then a look at the
// identity with its retries, which never leaves programming mode.
TEST_F(PromTest, CorrectUpdateLeavesTheLedgerEmpty) {
    const auto fresh = encodeConfiguration({0x21, 1, 'W', 12, 0x5A11});
    probe_->enterProgramming();
    erase();
    EXPECT_EQ(probe_->userCode(), 0xFFFFFFFFU);
    EXPECT_EQ(card().protection(), 7);
    for (std::size_t page = 0; page < kPromPages; page += 73) {
        const auto content = std::span(fresh).subspan(page * kPageBytes, kPageBytes);
        probe_->address(static_cast<uint32_t>(page * 0x20));
        probe_->loadPage(content);
        probe_->program();
        probe_->instruction(Prom::readPageInstruction);
        EXPECT_EQ(probe_->page(content), std::vector<uint8_t>(content.begin(), content.end())) << page;
    }
    for (int time = 0; time < 3; ++time) {
        probe_->address(0x8000);
        probe_->userCode(0x21307015);
        probe_->program();
    }
    probe_->instruction(Prom::controlDataInstruction);
    probe_->data(3, 3);
    probe_->program();
    probe_->leaveProgramming();
    EXPECT_FALSE(card().chain().prom().state().programmingMode);
    for (int time = 0; time < 9; ++time) {
        probe_->enterProgramming();
        probe_->address(0x8000);
        EXPECT_EQ(probe_->userCode(), 0x21307015U);
    }
    probe_->reset();
    EXPECT_EQ(card().protection(), 3);
    EXPECT_TRUE(machine_.ledger().empty());
}

TEST_F(PromTest, ProgrammingOnlyTurnsOnesIntoZeros) {
    probe_->enterProgramming();
    const auto before = cellsOf(4);
    const auto data = patternPage(9);
    probe_->address(4 * 0x20);
    probe_->loadPage(data);
    probe_->program();
    probe_->reset();
    for (std::size_t i = 0; i < kPageBytes; ++i)
        ASSERT_EQ(cellsOf(4)[i], before[i] & data[i]) << i;
    EXPECT_EQ(misuses(), Misuses{Misuse::programmedTwice});
}

// Run-Test/Idle begins at one rising edge and ends at another three stores, and the wait between, later.
TEST_F(PromTest, AnAccessTooFewDamagesTheRow) {
    probe_->enterProgramming();
    erase();
    const auto data = patternPage(1);
    for (const bool enough : {false, true}) {
        const std::size_t page = enough ? 20 : 21;
        probe_->address(static_cast<uint32_t>(page * 0x20));
        probe_->loadPage(data);
        probe_->instruction(Prom::programInstruction);
        probe_->waitAccesses(42000 - 3 - (enough ? 0 : 1));
        probe_->instruction(Prom::bypassInstruction);
        if (enough)
            EXPECT_EQ(cellsOf(page), data);
        else
            EXPECT_GT(differentBits(cellsOf(page), data), 100);
    }
    EXPECT_EQ(misuses(), Misuses{Misuse::shortWait});
}

TEST_F(PromTest, EarlyLeavingDamagesEveryKindOfRow) {
    probe_->enterProgramming();
    probe_->address(0x8000);
    probe_->userCode(0x12345678);
    probe_->program(13000);
    probe_->instruction(Prom::controlDataInstruction);
    probe_->data(2, 3);
    probe_->program(13000);
    probe_->instruction(Prom::bypassInstruction);
    EXPECT_NE(card().identity(), 0x12345678U);
    EXPECT_NE(card().protection(), 2);
    const auto damaged = card().identity();

    erase(14'900'000);
    EXPECT_GT(differentBits(card().cells().pages(), std::vector<uint8_t>(kPromBytes, 0xFF)), 10000);
    EXPECT_NE(card().identity(), 0xFFFFFFFFU);

    probe_->address(0x8000);
    probe_->userCode(0x12345678);
    probe_->program(0);
    probe_->instruction(Prom::bypassInstruction);
    EXPECT_EQ(card().identity(), damaged) << "the same damage every time";
    EXPECT_EQ(misuses(), (Misuses{Misuse::shortWait, Misuse::shortWait}));
    EXPECT_EQ(machine_.ledger().entries()[0].times, 3U);
}

TEST_F(PromTest, SkippingRunTestIdleDamagesToo) {
    probe_->enterProgramming();
    probe_->address(0x8000);
    probe_->userCode(0x12345678);
    probe_->enter(Probe::Scan::instruction);
    probe_->shift(Probe::bitsOf(0xEA << 5 | 0x1F, 13));
    probe_->clock(true);  // Update-IR
    probe_->clock(true);  // Select-DR-Scan
    EXPECT_NE(card().identity(), 0x12345678U);
    EXPECT_EQ(misuses(), Misuses{Misuse::shortWait});
}

TEST_F(PromTest, LeavingProgrammingModeNeedsItsTime) {
    probe_->enterProgramming();
    probe_->leaveProgramming(3990);
    EXPECT_TRUE(card().chain().prom().state().programmingMode);
    EXPECT_EQ(misuses(), Misuses{Misuse::shortWait});
    probe_->leaveProgramming(4000);
    EXPECT_FALSE(card().chain().prom().state().programmingMode);
    probe_->leaveProgramming(0);  // there is nothing left to leave
    EXPECT_EQ(machine_.ledger().entries()[0].times, 1U);
}

TEST_F(PromTest, NothingIsWrittenOutsideProgrammingModeOrWhereNoRowIs) {
    const std::vector<uint8_t> before(card().cells().image().begin(), card().cells().image().end());
    probe_->address(0x8000);
    probe_->userCode(0);
    probe_->program();
    erase();
    EXPECT_EQ(misuses(), (Misuses{Misuse::outsideProgrammingMode, Misuse::outsideProgrammingMode}));
    machine_.ledger().clear();

    probe_->enterProgramming();
    for (const uint32_t address : {0x0U, 0x20U, 0x4000U}) {  // a user code belongs at 0x8000 only
        probe_->address(address);
        probe_->program();
    }
    probe_->loadPage(patternPage(5));
    for (const uint32_t address : {0x8000U, 0x4000U, 0x21U}) {
        probe_->address(address);
        probe_->program();
    }
    probe_->reset();
    EXPECT_EQ(machine_.ledger().entries().size(), 5U);
    for (const auto& entry : machine_.ledger().entries())
        EXPECT_EQ(entry.misuse, Misuse::noSuchRow) << entry.detail;
    EXPECT_TRUE(std::ranges::equal(card().cells().image(), before));
}

TEST_F(PromTest, PowerOffBreaksOffWhatRunsAndForgetsTheRegisters) {
    probe_->enterProgramming();
    probe_->address(0x8000);
    probe_->userCode(0x21000000);
    probe_->program(100);
    machine_.powerOff();
    machine_.powerOn();
    EXPECT_NE(card().identity(), 0x21000000U);
    EXPECT_FALSE(card().chain().prom().state().programmingMode);
    Probe again(host_);
    again.reset();
    EXPECT_EQ(again.address(0), 0U);
}

}  // namespace
}  // namespace simulator
