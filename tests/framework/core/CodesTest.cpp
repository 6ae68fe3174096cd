#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "framework/core/FourCharCode.h"
#include "framework/core/PascalString.h"

TEST(FourCharCode, NamesAreDecimalNumbersOrFourCharacters) {
    const std::pair<const char*, int32_t> cases[] = {
        {"CRDS", 0x43524453}, {"129", 129},       {"12a4", 0x31326134}, {"-129", 0x2D313239}, {"", 0},
        {"updaterWindow", 0}, {"99999999999", 0},
    };
    for (const auto& [name, code] : cases) {
        EXPECT_EQ(CodeFromName(name), code) << name;
    }
}

TEST(PascalString, CutsLongTextsBetweenCharacters) {
    Str255 string;
    PascalFromText(std::string(254, 'x') + "\xC3\xA9", string);
    EXPECT_EQ(TextOfPascal(string), std::string(254, 'x'));
    PascalFromText(std::string(253, 'x') + "\xC3\xA9z", string);
    EXPECT_EQ(TextOfPascal(string), std::string(253, 'x') + "\xC3\xA9");
}
