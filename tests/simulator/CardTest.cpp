#include "simulator/Card.h"

#include <gtest/gtest.h>

#include "simulator/SimulatedHost.h"

namespace simulator {
namespace {

constexpr const char* kServiceClass = "com_VornLabs_driver_VornMxDevice";

PromCells cellsWith(const FpgaConfiguration& configuration) {
    return {encodeConfiguration(configuration), 0x21307015, 3};
}

uint32_t* mapCard(SimulatedHost& host, std::size_t index, uint32_t memoryType = 0) {
    const auto connection = host.openService(host.servicesOfClass(kServiceClass).at(index));
    return static_cast<uint32_t*>(host.mapMemory(connection.value(), memoryType).value().base);
}

TEST(CardTest, RegistersLieInTheOrderOfTheFlavour) {
    Machine machine;
    machine.addCard({"M", "slot 1", 0x22, 3}, cellsWith({0x22, 3, 'M', 10, 0x4511}));
    machine.addCard({"W", "slot 2", 0x22, 3}, cellsWith({0x22, 3, 'W', 10, 0x4511}));
    machine.powerOn();
    SimulatedHost host(machine, {});
    const struct {
        uint32_t offset, word, reversed;
    } kRegisters[] = {{0x08, 0x22, 0x22000000},
                      {0x0C, 3, 0x03000000},
                      {0x10, 10, 0x0A000000},
                      {0x14, 0x4511, 0x11450000},
                      {0x18, 0, 0},
                      {0x108, 0x80, 0x80000000},
                      {0x1FC, 0, 0}};
    uint32_t* const big = mapCard(host, 0);
    uint32_t* const little = mapCard(host, 1);
    for (const auto& each : kRegisters) {
        EXPECT_EQ(host.loadWord(big + each.offset / 4), each.word) << each.offset;
        EXPECT_EQ(host.loadWord(little + each.offset / 4), each.reversed) << each.offset;
    }
    EXPECT_EQ(host.loadWord(big) & 0xFFFF, 0x564FU);
    EXPECT_EQ(host.loadWord(little) >> 16, 0x4F56U);
    EXPECT_NE(host.loadWord(big) >> 16, 0U);
    EXPECT_NE(host.loadWord(little) & 0xFFFF, 0x564FU) << "the wrong order must not read right";

    host.storeWord(little + 0x100 / 4, 0x40000000);
    EXPECT_EQ(machine.card(1).chain().state().clocks, 1U);
    EXPECT_EQ(host.loadWord(little + 0x100 / 4), 0x40000000U);
    host.storeWord(big + 0x100 / 4, 0x40000000);  // not its TCK
    EXPECT_EQ(machine.card(0).chain().state().clocks, 0U);
}

TEST(CardTest, OtherWordsIgnoreStoresAndRangeOneIsZero) {
    Machine machine;
    machine.addCard({"M", "slot 1", 0x20, 1}, cellsWith({0x20, 1, 'M', 10, 0x4511}));
    machine.powerOn();
    SimulatedHost host(machine, {});
    uint32_t* const registers = mapCard(host, 0);
    uint32_t* const memory = mapCard(host, 0, 1);
    for (uint32_t* const word : {registers + 2, registers + 3, registers + 0x108 / 4, registers + 0x104 / 4,
                                 memory, memory + 0x100 / 4}) {
        const uint32_t before = host.loadWord(word);
        host.storeWord(word, 0x40404040);
        EXPECT_EQ(host.loadWord(word), before);
    }
    EXPECT_EQ(host.loadWord(memory), 0U);
    EXPECT_EQ(machine.card(0).chain().state().clocks, 0U);
    EXPECT_EQ(machine.card(0).window(0)->at(0x104).loads, 2U);
    EXPECT_EQ(machine.card(0).window(0)->at(0x104).stores, 1U);
    EXPECT_EQ(machine.accesses(), 19U);
}

// An FPGA takes what is whole and meant for its model; the board keeps its own revision.
TEST(CardTest, PowerUpTakesOnlyAConfigurationThatFits) {
    for (uint8_t model = 0x20; model <= 0x25; ++model) {
        Machine machine;
        const FpgaConfiguration fitting{model, 9, model % 2 == 0 ? 'M' : 'W', 1, 0x1111};
        Card& good = machine.addCard({"good", "slot 1", model, 2}, cellsWith(fitting));
        Card& foreign =
            machine.addCard({"foreign", "slot 2", static_cast<uint8_t>(model ^ 1), 2}, cellsWith(fitting));
        Card& blank = machine.addCard({"blank", "slot 3", model, 2}, PromCells());
        EXPECT_FALSE(good.running()) << "no power yet";
        machine.powerOn();
        EXPECT_EQ(good.running(), fitting);
        EXPECT_FALSE(foreign.running());
        EXPECT_FALSE(blank.running());
        SimulatedHost host(machine, {});
        EXPECT_EQ(host.servicesOfClass(kServiceClass).size(), 1U);
    }
}

TEST(CardTest, NewFirmwareShowsAtThePowerUpAfterIt) {
    Machine machine;
    Card& card = machine.addCard({"K40", "slot 1", 0x23, 2}, cellsWith({0x23, 2, 'M', 7, 0x5309}));
    machine.powerOn();
    SimulatedHost host(machine, {});
    uint32_t* const registers = mapCard(host, 0);
    card.cells().setImage(cellsWith({0x23, 2, 'W', 8, 0x6101}).image());
    EXPECT_EQ(host.loadWord(registers + 4), 7U);
    machine.powerOff();
    EXPECT_EQ(host.loadWord(registers + 4), 0xFFFFFFFFU);
    machine.powerOn();
    EXPECT_EQ(host.loadWord(registers + 4), 0x08000000U);

    card.cells().erase();
    EXPECT_EQ(host.loadWord(registers + 4), 0x08000000U) << "it runs on until the power goes";
    machine.powerOff();
    machine.powerOn();
    EXPECT_EQ(host.loadWord(registers), 0xFFFFFFFFU);
    host.storeWord(registers + 0x100 / 4, 0x40);
    EXPECT_EQ(host.loadWord(registers + 0x100 / 4), 0xFFFFFFFFU);
}

}  // namespace
}  // namespace simulator
