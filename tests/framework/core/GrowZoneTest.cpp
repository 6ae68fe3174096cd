#include "framework/core/LGrowZone.h"

#include <gtest/gtest.h>

#include <new>

TEST(GrowZoneTest, ReleasesItsReserveOnceAndThenFails) {
    const LGrowZone zone(20000);
    testing::internal::CaptureStderr();
    std::get_new_handler()();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Memory is low\n");
    EXPECT_THROW(std::get_new_handler()(), std::bad_alloc);
}
