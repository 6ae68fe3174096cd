#include "xsvf/VarLenByte.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/xsvf/FakePort.h"
#include "xsvf/JtagPort.h"

namespace {

var_len_byte valueOf(const std::string& hexadecimal) {
    auto bytes = bytesOf(hexadecimal);
    openPort(bytes.data(), 0, nullptr, nullptr);
    var_len_byte result;
    readVal(&result, static_cast<int16_t>(bytes.size()));
    return result;
}

TEST(VarLenByteTest, ComparesUnderTheMaskAtTheExpectedLength) {
    const var_len_byte expected = valueOf("0F F0"), actual = valueOf("0E F0 55"), mask = valueOf("FE FF"),
                       none;
    EXPECT_EQ(EqualLenVal(&expected, &actual, &mask), 1);
    EXPECT_EQ(EqualLenVal(&expected, &actual, nullptr), 0);
    EXPECT_EQ(EqualLenVal(&none, &actual, nullptr), 1);
}

TEST(VarLenByteTest, AddsAtTheFirstAddendsLength) {
    const var_len_byte one = valueOf("00 00 01"), carry = valueOf("00 01");
    var_len_byte sum = valueOf("00 FF");
    addVal(&sum, &sum, &carry);
    EXPECT_EQ(value(&sum), 0x0100U);
    addVal(&sum, &sum, &one);
    EXPECT_EQ(sum.sByteCount, 2);
}

TEST(VarLenByteTest, NegativeCountConsumesBytesWithoutStoringThem) {
    std::vector<uint8_t> image(65536, 0xAA);
    openPort(image.data(), 65536, nullptr, nullptr);
    static var_len_byte values[2];  // static, so that padding is zero, too
    readVal(&values[0], -1);
    EXPECT_EQ(values[0].sByteCount, -1);
    EXPECT_EQ(gulCurrentOffset, 65535U);
    const auto* const behind = reinterpret_cast<const uint8_t*>(std::end(values[0].aucValue));
    EXPECT_EQ(std::count(behind, reinterpret_cast<const uint8_t*>(std::end(values)), 0),
              reinterpret_cast<const uint8_t*>(std::end(values)) - behind);
}

}  // namespace
