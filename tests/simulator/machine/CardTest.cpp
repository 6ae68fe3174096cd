#include "simulator/machine/Card.h"

#include <gtest/gtest.h>

#include "platform/CardDriver.h"
#include "tests/simulator/Probe.h"

namespace simulator {

class CardTest : public ProbedMachineTest {
  protected:
    uint32_t* map(std::size_t index, uint32_t memoryType = 0) {
        const auto connection = host_.openService(host_.servicesOfClass(card_driver::kServiceClass)[index]);
        return static_cast<uint32_t*>(host_.mapMemory(connection.value(), memoryType).value().base);
    }
};

TEST_F(CardTest, FlavourSetsTheByteOrderOfTheRegisters) {
    const struct {
        uint32_t offset, onVornMx, onK40;
    } kRegisters[] = {{0x08, 0x21, 0x23000000},
                      {0x0C, 1, 0x02000000},
                      {0x10, 10, 0x07000000},
                      {0x14, 0x4511, 0x09530000},
                      {0x108, 0x80, 0x80000000}};
    uint32_t* const big = map(0);
    uint32_t* const little = map(1);
    for (const auto& each : kRegisters) {
        EXPECT_EQ(host_.loadWord(big + each.offset / 4), each.onVornMx) << each.offset;
        EXPECT_EQ(host_.loadWord(little + each.offset / 4), each.onK40) << each.offset;
    }
    EXPECT_EQ(host_.loadWord(big) & 0xFFFF, 0x564FU);
    EXPECT_NE(host_.loadWord(big) >> 16, 0U);
    EXPECT_EQ(host_.loadWord(little) >> 16, 0x4F56U);
    EXPECT_NE(host_.loadWord(little) & 0xFFFF, 0x564FU) << "the wrong order must not read right";
    host_.storeWord(little + 0x100 / 4, 0x40);  // not its TCK
    host_.storeWord(little + 0x100 / 4, 0x40000000);
    EXPECT_EQ(machine_.card(1).chain().state().clocks, 1U);
    EXPECT_EQ(host_.loadWord(little + 0x100 / 4), 0x40000000U);
}

TEST_F(CardTest, IgnoresOtherStoresAndCountsEveryAccess) {
    uint32_t* const registers = map(0);
    uint32_t* const memory = map(0, 1);
    const uint64_t accesses = machine_.accesses();
    for (uint32_t* const word : {registers + 2, registers + 0x108 / 4, registers + 0x104 / 4, memory}) {
        const uint32_t before = host_.loadWord(word);
        host_.storeWord(word, 0x40404040);
        EXPECT_EQ(host_.loadWord(word), before);
    }
    EXPECT_EQ(machine_.accesses(), accesses + 12);
    EXPECT_EQ(machine_.microseconds(), (accesses + 12) / 3);
}

// An FPGA loads only an undamaged configuration for its model, for any board revision.
TEST(CardPowerUpTest, LoadsOnlyAMatchingConfiguration) {
    for (uint8_t model = 0x20; model <= 0x25; ++model) {
        const FpgaConfiguration fitting{model, 9, model % 2 == 0 ? 'M' : 'W', 1, 0x1111};
        const auto pages = encodeConfiguration(fitting);
        Machine machine;
        Card& good = machine.addCard({"good", "slot 1", model, 2}, {pages, 0, 0});
        Card& foreign =
            machine.addCard({"foreign", "slot 2", static_cast<uint8_t>(model ^ 1), 2}, {pages, 0, 0});
        machine.powerOn();
        EXPECT_EQ(good.running(), fitting);
        EXPECT_FALSE(foreign.running());
        EXPECT_EQ(SimulatedHost(machine, {}).servicesOfClass(card_driver::kServiceClass).size(), 1U);
    }
}

TEST_F(CardTest, PowerCycleLoadsNewFirmwareAndResetsTheChain) {
    const uint32_t* const version = map(0) + 4;
    card().cells().assign(PromCells(encodeConfiguration({0x21, 1, 'W', 8, 0x6101}), 0, 0).bytes());
    probe_->enterProgramming();
    EXPECT_EQ(host_.loadWord(version), 10U);
    machine_.powerOff();
    EXPECT_EQ(host_.loadWord(version), 0xFFFFFFFFU);
    machine_.powerOn();
    EXPECT_EQ(host_.loadWord(version), 0x08000000U);
    EXPECT_FALSE(chain().prom().state().programmingMode);
    EXPECT_EQ(chain().prom().tap(), TapState::testLogicReset);
}

}  // namespace simulator
