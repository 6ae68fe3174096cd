#include <IOKit/IOKitLib.h>
#include <gtest/gtest.h>

#include "platform/LiveObjects.h"
#include "tests/support/FakeHost.h"

namespace {

TEST(IOKitLibTest, CountsLeaksAndAvoidsSmallHandles) {
    FakeHost host;
    host.cards.resize(1);
    mach_port_t masterPort = MACH_PORT_NULL;
    ASSERT_EQ(IOMasterPort(MACH_PORT_NULL, &masterPort), kIOReturnSuccess);
    io_iterator_t iterator = 0;
    ASSERT_EQ(
        IOServiceGetMatchingServices(masterPort, IOServiceMatching(host.serviceClass.c_str()), &iterator),
        kIOReturnSuccess);
    const io_service_t service = IOIteratorNext(iterator);
    EXPECT_EQ(IOIteratorNext(iterator), 0u);
    EXPECT_GT(iterator, 0xFFFFu);
    EXPECT_GT(service, 0xFFFFu);
    EXPECT_EQ(CountLiveObjects(), (LiveObjects{.services = 1, .iterators = 1}));

    EXPECT_EQ(IOObjectRelease(service), kIOReturnSuccess);
    EXPECT_EQ(IOObjectRelease(service), kIOReturnBadArgument);
    io_connect_t connection = 0;
    EXPECT_EQ(IOServiceOpen(service, mach_task_self(), 0, &connection), kIOReturnBadArgument);
    EXPECT_EQ(IOObjectRelease(iterator), kIOReturnSuccess);
    EXPECT_EQ(IOIteratorNext(iterator), 0u);
    // Matching consumes the dictionary even when it fails.
    EXPECT_EQ(IOServiceGetMatchingServices(masterPort + 1, IOServiceMatching("any"), &iterator),
              kIOReturnBadArgument);
    EXPECT_EQ(CountLiveObjects(), LiveObjects());
}

}  // namespace
