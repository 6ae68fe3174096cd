#include "hw/PromOperations.h"

#include <gtest/gtest.h>

#include "hw/ApplicationHooks.h"
#include "tests/hw/RecordingCard.h"

namespace {

// The chain is silent, so the image's error is followed by that of writing the identity.
TEST(PromOperations, programWarnsOfABlankIdentityAndGoesOn) {
    const std::string failures =
        "Illegal Command Error / EEPROM Programming Failure! Error / Error writing Serial Number! ";
    for (const uint32_t identity : {0U, 0x7FFFFFFFU, 0x21307015U}) {
        RecordingCard card;
        gSerialNumber = identity;
        uint8_t illegalCommand = 0x05;
        EXPECT_EQ(ProgramConfigProm(&illegalCommand, 1), 4);
        const bool isBlank = identity != 0x21307015;
        EXPECT_EQ(card.asked, (isBlank ? "Error / Serial Number is blank! " : "") + failures);
    }
}

}  // namespace
