#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "framework/core/LGrowZone.h"
#include "framework/core/UKeptException.h"
#include "framework/core/URegistrar.h"

namespace {

class First : public LAttachable {
  public:
    static constexpr const char* kClassName = "Sample";
};

class Second : public LAttachable {
  public:
    static constexpr const char* kClassName = "Sample";
};

}  // namespace

TEST(Registrar, MakesTheClassRegisteredLastUnderAName) {
    EXPECT_EQ(URegistrar::CreateObject("Sample"), nullptr);
    URegistrar::RegisterClass<First>();
    URegistrar::RegisterClass<First>();
    EXPECT_NE(dynamic_cast<First*>(URegistrar::CreateObject("Sample").get()), nullptr);
    URegistrar::RegisterClass<Second>();
    EXPECT_NE(dynamic_cast<Second*>(URegistrar::CreateObject("Sample").get()), nullptr);
}

TEST(KeptException, TheFirstIsRethrownOnce) {
    testing::internal::CaptureStderr();
    KeepException([] { throw std::runtime_error("cause"); });
    KeepException([] { throw std::runtime_error("consequence"); });
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Further error: consequence\n");
    try {
        UKeptException::RethrowKept();
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "cause");
    }
    EXPECT_NO_THROW(UKeptException::RethrowKept());
}

TEST(GrowZone, GivesItsReserveBackOnceAndThenLetsTheAllocationFail) {
    const std::new_handler before = std::get_new_handler();
    {
        const LGrowZone zone(20000);
        EXPECT_FALSE(zone.MemoryIsLow());
        testing::internal::CaptureStderr();
        std::get_new_handler()();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Memory is low\n");
        EXPECT_TRUE(zone.MemoryIsLow());
        EXPECT_THROW(std::get_new_handler()(), std::bad_alloc);
    }
    EXPECT_EQ(std::get_new_handler(), before);
}
