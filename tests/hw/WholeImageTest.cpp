#include <gtest/gtest.h>

#include <cstdlib>

#include "card/Registers.h"
#include "hw/JtagPort.h"
#include "images/prom/FirmwareImage.h"
#include "platform/CardDriver.h"
#include "simulator/host/SimulatedHost.h"
#include "tests/support/AllocationCounter.h"

namespace {

TEST(WholeImageTest, ReplacesThePromsContentWithoutAllocating) {
    const auto old = simulator::encodeConfiguration({0x21, 1, 'M', 10, 0x5C1F});
    const auto after = simulator::encodeConfiguration({0x21, 1, 'W', 12, 0x6311});
    auto image = images::makeFirmwareImage(std::span<const uint8_t, simulator::kPromBytes>(after));
    for (const bool otherExpectation : {false, true}) {
        simulator::Machine machine;
        simulator::Card& card = machine.addCard({"Card", "Slot", 0x21, 1}, {old, 0x21307015, 0});
        machine.powerOn();
        simulator::SimulatedHost host(machine, {});
        InstallHost(&host);
        const auto connection = host.openService(host.servicesOfClass(card_driver::kServiceClass).at(0));
        gpRegisters = static_cast<uint32_t*>(host.mapMemory(connection.value(), 0).value().base);

        image[image.size() - 300] ^= otherExpectation ? 1 : 0;  // in the last page
        tagSXsvfInfo info;
        std::size_t before = allocations;
        void* volatile memory = std::realloc(std::malloc(1), 2);
        std::free(memory);
        memory = std::calloc(1, 1);
        std::free(memory);
        ::operator delete(::operator new(1));
        ASSERT_GE(allocations, before + 4) << "the counter does not work";
        before = allocations;
        PlayOnCard(&info, image.data(), static_cast<uint32_t>(image.size()));
        EXPECT_EQ(allocations, before);
        InstallHost(nullptr);
        EXPECT_EQ(info.iResult, otherExpectation ? kXsvfMaxRetries : kXsvfNoError);
        const auto pages = card.cells().pages();
        EXPECT_TRUE(std::equal(after.begin(), after.end(), pages.begin(), pages.end()));
        EXPECT_EQ(card.chain().prom().state().programmingMode, otherExpectation);
        EXPECT_TRUE(machine.ledger().empty());
        EXPECT_LT(machine.accesses(), 280'000'000U);
    }
}

}  // namespace
