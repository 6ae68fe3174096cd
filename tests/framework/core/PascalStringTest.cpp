#include "framework/core/PascalString.h"

#include <gtest/gtest.h>

TEST(PascalStringTest, CutsLongTextsBetweenCharacters) {
    Str255 string;
    PascalFromText(std::string(254, 'x') + "\xC3\xA9", string);
    EXPECT_EQ(TextOfPascal(string), std::string(254, 'x'));
    PascalFromText(std::string(253, 'x') + "\xC3\xA9z", string);
    EXPECT_EQ(TextOfPascal(string), std::string(253, 'x') + "\xC3\xA9");
}
