#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

namespace {

TEST(PascalStrings, LongTextIsCutAfterAWholeCharacter) {
    Str255 pascal;
    CopyCStringToPascal((std::string(254, 'x') + "\u00e9tail").c_str(), pascal);
    EXPECT_EQ(pascal[0], 254);
    CopyCStringToPascal(std::string(300, 'x').c_str(), pascal);
    EXPECT_EQ(pascal[0], 255);
    CopyCStringToPascal("", pascal);
    EXPECT_EQ(pascal[0], 0);
}

}  // namespace
