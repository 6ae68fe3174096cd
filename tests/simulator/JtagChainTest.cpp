#include "simulator/JtagChain.h"

#include <gtest/gtest.h>

#include "simulator/DefaultMachine.h"
#include "tests/simulator/Probe.h"

namespace simulator {
namespace {

class JtagChainTest : public testing::Test {
  protected:
    JtagChainTest() {
        addDefaultCards(machine_);
        machine_.powerOn();
        probe_.emplace(host_);
        probe_->reset();
    }
    [[nodiscard]] JtagChain& chain() { return machine_.card(0).chain(); }

    Machine machine_;
    SimulatedHost host_{machine_, {}};
    std::optional<Probe> probe_;
};

using Scan = Probe::Scan;

// The FPGA sits next to TDO: its 5 bits come out first, and what goes in first ends up there.
TEST_F(JtagChainTest, InstructionBitsReachTheirDevices) {
    const auto captured = probe_->scan(Scan::instruction, Probe::bitsOf(0xA5 << 5 | 0x12, 13));
    EXPECT_EQ(captured, Probe::bitsOf(0b00000001'00001, 13));
    EXPECT_EQ(chain().fpga().instruction(), 0x12U);
    EXPECT_EQ(chain().prom().instruction(), 0xA5U);
}

TEST_F(JtagChainTest, ResetSelectsIdentificationAndBypass) {
    probe_->instruction(Prom::userCodeInstruction);
    probe_->reset();
    EXPECT_EQ(probe_->data(0, 32), 0xF5035093U);
    EXPECT_EQ(chain().fpga().instruction(), 0x1FU);
}

TEST_F(JtagChainTest, BypassIsOneBitPerDevice) {
    probe_->instruction(Prom::bypassInstruction);
    EXPECT_EQ(probe_->scan(Scan::data, {true, false, true, true, false}),
              (std::vector<bool>{false, false, true, false, true}));
    EXPECT_TRUE(machine_.ledger().empty());
}

TEST_F(JtagChainTest, TdoChangesOnTheFallingEdgeAndFloatsHighOutsideShift) {
    EXPECT_TRUE(probe_->tdo());
    probe_->clock(true);
    probe_->clock(false);
    EXPECT_TRUE(probe_->tdo()) << "Capture-DR";
    probe_->drive(true, false);
    EXPECT_TRUE(probe_->tdo()) << "Shift-DR, still high";
    probe_->drive(false, false);
    EXPECT_FALSE(probe_->tdo()) << "the bypass bit";
    probe_->drive(true, false);
    EXPECT_FALSE(probe_->tdo());
    probe_->drive(true, true);  // no edge, so TMS means nothing
    probe_->drive(false, false);
    EXPECT_TRUE(probe_->tdo()) << "bit 0 of the identification code";
    EXPECT_EQ(chain().prom().tap(), TapState::shiftDr);
}

TEST_F(JtagChainTest, PauseHoldsAScanWithoutLosingABit) {
    probe_->enter(Scan::data);
    auto out = probe_->shift(std::vector<bool>(10));
    probe_->clock(false);  // Pause-DR
    probe_->clock(false);
    probe_->clock(true);   // Exit2-DR
    probe_->clock(false);  // Shift-DR
    const auto rest = probe_->shift(std::vector<bool>(23));
    out.insert(out.end(), rest.begin(), rest.end());
    auto expected = Probe::bitsOf(0xF5035093, 32);
    expected.insert(expected.begin(), false);
    EXPECT_EQ(out, expected);
}

// Writing a register from half a scan is a mistake; resetting in the middle of one, or reading too little, is
// not.
TEST_F(JtagChainTest, OnlyShortScansThatTakeEffectAreMisuse) {
    probe_->scan(Scan::data, std::vector<bool>(8));  // part of the identification code
    probe_->enter(Scan::instruction);
    probe_->shift(std::vector<bool>(12));
    probe_->reset();
    probe_->instruction(Prom::addressInstruction);
    probe_->scan(Scan::data, std::vector<bool>(40));
    EXPECT_TRUE(machine_.ledger().empty());

    probe_->scan(Scan::data, std::vector<bool>(16));
    probe_->scan(Scan::instruction, std::vector<bool>(12, true));
    ASSERT_EQ(machine_.ledger().entries().size(), 1U);
    EXPECT_EQ(machine_.ledger().entries()[0].misuse, Misuse::shortScan);
    EXPECT_EQ(machine_.ledger().entries()[0].times, 2U);
}

}  // namespace
}  // namespace simulator
