#include "simulator/jtag/JtagChain.h"

#include <gtest/gtest.h>

#include "tests/simulator/Probe.h"

namespace simulator {

using JtagChainTest = ProbedMachineTest;
using Scan = Probe::Scan;

// The FPGA is next to TDO: its 5 bits come out first, and the first bits shifted in end up there.
TEST_F(JtagChainTest, ResetSelectsIdentificationAndBypass) {
    const auto captured = probe_->scan(Scan::instruction, Probe::bitsOf(Prom::userCodeInstruction << 5, 13));
    EXPECT_EQ(captured, Probe::bitsOf(0b00000001'00001, 13));
    EXPECT_EQ(chain().fpga().instruction(), 0U);
    probe_->reset();
    EXPECT_EQ(probe_->data(0, 32), 0xF5035093U);
    EXPECT_EQ(chain().fpga().instruction(), 0x1FU);
}

TEST_F(JtagChainTest, TdoChangesOnTheFallingEdgeAndFloatsHighOutsideShift) {
    EXPECT_TRUE(probe_->tdo());
    probe_->clocks({1, 0});
    probe_->drive(true, false);
    EXPECT_TRUE(probe_->tdo()) << "Shift-DR, still high";
    probe_->drive(false, false);
    EXPECT_FALSE(probe_->tdo()) << "the bypass bit";
    probe_->drive(true, false);
    probe_->drive(true, true);  // not an edge, so TMS is ignored
    EXPECT_FALSE(probe_->tdo());
    probe_->drive(false, false);
    EXPECT_TRUE(probe_->tdo()) << "bit 0 of the identification code";
}

TEST_F(JtagChainTest, PauseHoldsAScanWithoutLosingABit) {
    probe_->enter(Scan::data);
    EXPECT_EQ(probe_->shift(std::vector<bool>(9)), Probe::bitsOf(0xF5035093 << 1, 9));
    probe_->clocks({0, 0, 1, 0});  // Pause-DR twice, Exit2-DR, Shift-DR
    EXPECT_EQ(probe_->shift(std::vector<bool>(24)), Probe::bitsOf(0xF5035093 >> 8, 24));
}

// Writing a register from part of a scan is misuse. Resetting during a scan, or reading only part of a
// register, is not.
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
    EXPECT_EQ(misuses(), std::vector<Misuse>(2, Misuse::shortScan));
}

}  // namespace simulator
