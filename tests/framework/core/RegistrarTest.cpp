#include <gtest/gtest.h>

#include "framework/core/LAttachable.h"
#include "framework/core/URegistrar.h"

TEST(RegistrarTest, LastRegistrationOfAClassWins) {
    URegistrar::RegisterClass("Thing", [] { return std::unique_ptr<LAttachable>(); });
    URegistrar::RegisterClass("Thing", [] { return std::make_unique<LAttachable>(); });
    EXPECT_NE(URegistrar::CreateObject("Thing"), nullptr);
    EXPECT_EQ(URegistrar::CreateObject("Other"), nullptr);
}
