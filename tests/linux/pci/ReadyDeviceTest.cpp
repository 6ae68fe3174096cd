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

TEST(ReadyDeviceTest, IsMadeReadyAgainWhenItHasToStayAwake) {
    MadeUpBus bus;
    bus.add(kCard, {MadeUpBus::range(0xF1000000, 0x200)});
    {
        ReadyDevice device(*PciBus(bus.path()).device(kCard));
        // As programs do that save power, and others that mean no harm.
        bus.setAttribute(kCard, "power/control", "auto\n");
        bus.setAttribute(kCard, "driver_override", "(null)\n");
        bus.setAttribute(kCard, "enable", "0\n");
        bus.setCommand(kCard, 0x0144);
        EXPECT_EQ(device.stayAwake(), "");
        EXPECT_EQ(bus.command(kCard), 0x0142);
        EXPECT_EQ(bus.attribute(kCard, "power/control"), "on\n");
        EXPECT_EQ(bus.attribute(kCard, "enable"), "1\n");
        EXPECT_EQ(bus.attribute(kCard, "driver_override"), "vupdater 0000 0 on\n");
        bus.setCommand(kCard, 0xFFFF);
        EXPECT_EQ(device.stayAwake(),
                  "The card could not be read. Check that it is still in the computer, then try again.");
        bus.setCommand(kCard, 0x0140);
        EXPECT_EQ(device.stayAwake(), "") << "at the next try";
        EXPECT_EQ(bus.command(kCard), 0x0142);
        bus.setAttribute(kCard, "driver_override", "vfio-pci\n");
        EXPECT_EQ(
            device.stayAwake(),
            "Drivers cannot be kept away from the card. Switch the computer off and on, then try again.");
        bus.setAttribute(kCard, "driver_override", "(null)\n");
        EXPECT_EQ(device.stayAwake(), "");
        bus.setCommand(kCard, 0x0146);
        bus.bind(kCard, "snd_card");
        EXPECT_EQ(device.stayAwake(),
                  "The driver \"snd_card\" uses the card. Unload that driver, then try again.");
    }
    EXPECT_EQ(bus.command(kCard), 0x0146) << "the driver's";
    EXPECT_EQ(bus.attribute(kCard, "power/control"), "on\n");
    EXPECT_EQ(bus.attribute(kCard, "driver_override"), "\n");
}

}  // namespace
