#include "catalogue/CardIdentity.h"

#include <gtest/gtest.h>

namespace catalogue {
namespace {

TEST(CardIdentityTest, FormatsSerialNumbers) {
    EXPECT_EQ(serialNumberText(0x21307015), "2103070021");
    EXPECT_EQ(serialNumberText(0x25F35FFF), "2515534095");
    EXPECT_EQ(identityModelCode(0x21307015), 0x21);
    EXPECT_TRUE(isBlankIdentity(0));
    EXPECT_TRUE(isBlankIdentity(0x7FFFFFFF));
    EXPECT_FALSE(isBlankIdentity(0xFFFFFFFF));
}

TEST(CardIdentityTest, ParsesTypedSerialNumbers) {
    const std::pair<const char*, uint32_t> accepted[] = {{"2103070021", 0x21307015},
                                                         {"2503530001", 0x25335001},
                                                         {"2515534095", 0x25F35FFF},
                                                         {"2001010001", 0x20101001},
                                                         // A field ends at its first foreign character.
                                                         {"231x2z7abc", 0x23102007},
                                                         {"23011012\u00e9\u00e9", 0x2310A00C}};
    for (const auto& [text, word] : accepted) {
        EXPECT_EQ(parseTypedSerialNumber(text).value_or(0), word) << text;
    }
    for (const char* text :
         {"", "210307002", "21030700211", "1F03070021", "2603070021", "x103070021", "2100070021",
          "2116070021", "2103000021", "2103540021", "2103070000", "2103074096", "21 3070021",
          "210307002\u00e9\u00e9", "-103070021", "2103-70021"}) {
        EXPECT_FALSE(parseTypedSerialNumber(text)) << text;
    }
}

TEST(CardIdentityTest, FormatsTheManufactureDate) {
    const std::pair<uint32_t, const char*> weeks[] = {{1, "Jan 01, 2003"},
                                                      {5, "Jan 29, 2003"},
                                                      {7, "Feb 12, 2003"},
                                                      {9, "Feb 26, 2003"},
                                                      {10, "Mar 05, 2003"},
                                                      {52, "Dec 24, 2003"},
                                                      {53, "Dec 31, 2003"},
                                                      {0, "Unknown!"},
                                                      {54, "Unknown!"},
                                                      {255, "Unknown!"},
                                                      // A day count that a month uses up exactly leaves day 0
                                                      // of the next one; cards have always been shown so.
                                                      {18, "May 00, 2003"}};
    for (const auto& [week, date] : weeks) {
        EXPECT_EQ(manufactureDateText(0x21300015 | week << 12), date) << "week " << week;
    }
    EXPECT_EQ(manufactureDateText(0), "Unknown!");
}

}  // namespace
}  // namespace catalogue
