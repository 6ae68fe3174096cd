#include "simulator/jtag/FpgaConfiguration.h"

#include <gtest/gtest.h>

namespace simulator {

constexpr FpgaConfiguration kConfiguration{0x21, 1, 'W', 12, 0x3A1F};

// PROM files and firmware images share this encoding, so it must not change.
TEST(FpgaConfigurationTest, EncodingIsFixedAndDamageIsRefused) {
    auto prom = encodeConfiguration(kConfiguration);
    const std::vector<uint8_t> header{'V', 'F', 'P', 'G', 1, 0x21, 1, 'W', 12, 0, 0x3A, 0x1F};
    ASSERT_EQ(prom.size(), 262144U);
    EXPECT_TRUE(std::equal(header.begin(), header.end(), prom.begin()));
    // The checksum was calculated with zlib.
    EXPECT_EQ(std::vector<uint8_t>(prom.end() - 4, prom.end()),
              (std::vector<uint8_t>{0x8A, 0x54, 0x02, 0x72}));
    EXPECT_EQ(decodeConfiguration(prom), kConfiguration);
    for (const std::size_t at : std::initializer_list<std::size_t>{0, 4, 9, kPageBytes, kPromBytes - 1}) {
        prom[at] ^= 0x10;
        EXPECT_FALSE(decodeConfiguration(prom)) << "byte " << at;
        prom[at] ^= 0x10;
    }
    EXPECT_FALSE(decodeConfiguration(std::span(prom).first(12)));
    EXPECT_FALSE(decodeConfiguration(std::vector<uint8_t>(kPromBytes, 0xFF)));
    EXPECT_FALSE(decodeConfiguration(encodeConfiguration({0x21, 1, 'X', 12, 0x3A1F})));
}

}  // namespace simulator
