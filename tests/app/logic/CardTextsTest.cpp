#include "app/logic/CardTexts.h"

#include <gtest/gtest.h>

#include "app/logic/CardModel.h"

namespace {

TEST(CardModel, EveryModelHasItsName) {
    const std::pair<uint16_t, const char*> models[] = {{0x20, "VornMX-A"}, {0x21, "VornMX-B"},
                                                       {0x22, "VornMX-C"}, {0x23, "Vorn K40"},
                                                       {0x24, "Vorn DX8"}, {0x25, "Vorn DX8-XS"}};
    for (const auto& [code, name] : models) {
        EXPECT_TRUE(IsModelCode(code));
        EXPECT_EQ(ModelName(code), name);
    }
    EXPECT_FALSE(IsModelCode(0x1F));
    EXPECT_FALSE(IsModelCode(0x26));
}

TEST(CardTexts, RegistersReadAsTexts) {
    EXPECT_EQ(BoardRevisionText(0), "NC");
    EXPECT_EQ(BoardRevisionText(2), "B");
    EXPECT_EQ(FirmwareVersionText(ByteOrderLetter(0), 7), "M7");
    EXPECT_EQ(FirmwareVersionText(ByteOrderLetter(1), 255), "W255");
    EXPECT_EQ(FirmwareDateText(0x6311), "Mar 17, 2006");
    // A month that there is not, 0 included, shows as December; the day is not checked.
    EXPECT_EQ(FirmwareDateText(0x500F), "Dec 15, 2005");
    EXPECT_EQ(FirmwareDateText(0xFD00), "Dec 00, 2015");
}

}  // namespace
