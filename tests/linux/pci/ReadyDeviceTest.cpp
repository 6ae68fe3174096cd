#include "linux/pci/ReadyDevice.h"

#include <gtest/gtest.h>

#include "linux/pci/PciBus.h"
#include "tests/support/MadeUpBus.h"

namespace {

using namespace pci;

const std::string kCard = "0000:05:01.0";

TEST(ReadyDeviceTest, IsLeftToADriverThatComesFirst) {
    MadeUpBus bus;
    bus.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)});
    bus.setCommand(kCard, 0x146);
    bus.bind(kCard, "snd_card");
    {
        const ReadyDevice late(*PciBus(bus.path()).device(kCard));
        EXPECT_EQ(late.refusal(),
                  "The driver \"snd_card\" uses the card. Unload that driver, then try again.");
        EXPECT_EQ(bus.command(kCard), 0x146);
        bus.setCommand(kCard, 0x547);
        bus.setAttribute(kCard, "enable", "1\n");
    }
    EXPECT_EQ(bus.command(kCard), 0x547);
    EXPECT_EQ(bus.attribute(kCard, "enable"), "1\n");
    EXPECT_EQ(bus.attribute(kCard, "power/control"), "auto\n");
    EXPECT_EQ(bus.attribute(kCard, "driver_override"), "\n");
}

}  // namespace
