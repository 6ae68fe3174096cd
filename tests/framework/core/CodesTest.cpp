#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "framework/core/FourCharCode.h"
#include "framework/core/LException.h"
#include "framework/core/PascalString.h"

TEST(FourCharCode, NamesAreDecimalNumbersOrFourCharacters) {
    EXPECT_EQ(FourCharCode("CRDS"), 0x43524453);
    const std::pair<const char*, int32_t> cases[] = {
        {"CRDS", 0x43524453}, {"1101", 1101}, {"129", 129}, {"12a4", 0x31326134}, {"-129", 0x2D313239},
        {"card", 0x63617264}, {"", 0},        {"abc", 0},   {"updaterWindow", 0}, {"99999999999", 0},
    };
    for (const auto& [name, code] : cases) {
        EXPECT_EQ(CodeFromName(name), code) << name;
    }
}

TEST(FourCharCode, AnExceptionNamesItsCode) {
    EXPECT_STREQ(LException(LException::kNilPointer).what(), "framework exception \"nilP\"");
    EXPECT_EQ(TextOfCode(0x41000AFF), "A???");
}

TEST(PascalString, CutsLongTextsBetweenCharacters) {
    Str255 string;
    PascalFromText("", string);
    EXPECT_EQ(string[0], 0);
    PascalFromText(std::string(300, 'x'), string);
    EXPECT_EQ(TextOfPascal(string), std::string(255, 'x'));
    PascalFromText(std::string(254, 'x') + "\xC3\xA9", string);
    EXPECT_EQ(TextOfPascal(string), std::string(254, 'x'));
    PascalFromText(std::string(253, 'x') + "\xC3\xA9z", string);
    EXPECT_EQ(TextOfPascal(string), std::string(253, 'x') + "\xC3\xA9");
    EXPECT_EQ(TextOfPascal(nullptr), "");
}
