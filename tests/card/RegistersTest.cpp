#include "card/Registers.h"

#include <gtest/gtest.h>

#include "tests/support/FakeHost.h"

namespace {

TEST(RegistersTest, FollowTheCardsByteOrder) {
    FakeHost host;
    gpRegisters = host.window.data();
    host.window[2] = 0x12345678;  // the bytes 12 34 56 78, in this order
    gbSwap = 0;
    EXPECT_EQ(MacReadULONG(RegisterAt(kDeviceIDRegister)), 0x12345678u);
    MacWriteULONG(RegisterAt(kJtagOutputRegister), 0xAABBCCDD);
    gbSwap = 1;
    EXPECT_EQ(MacReadULONG(RegisterAt(kDeviceIDRegister)), 0x78563412u);
    MacWriteULONG(RegisterAt(kJtagInputRegister), 0xAABBCCDD);
    gbSwap = 0;
    gpRegisters = nullptr;

    const std::vector<FakeHost::Access> expected = {{false, 0x008, 0x12345678},
                                                    {true, 0x100, 0xAABBCCDD},
                                                    {false, 0x008, 0x12345678},
                                                    {true, 0x108, 0xDDCCBBAA}};
    EXPECT_EQ(host.accesses, expected);
}

}  // namespace
