#include "images/play/ImageCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <random>

#include "images/prom/FirmwareImage.h"
#include "simulator/jtag/FpgaConfiguration.h"

namespace {

// An image compares what it programs with what it reads back. So no wrong byte, in the commands before the
// first page or anywhere else, can change what is written without a fault.
TEST(ImageCheckTest, PassesADamagedImageOnlyIfItWritesTheSame) {
    const simulator::FpgaConfiguration content{0x21, 1, 'M', 12, 0x6311};
    auto image = images::makeFirmwareImage(
        std::span<const uint8_t, simulator::kPromBytes>(simulator::encodeConfiguration(content)));
    std::mt19937 random;
    std::vector<std::size_t> places(60);
    std::iota(places.begin(), places.end(), 0);
    std::generate_n(std::back_inserter(places), 5, [&] { return random() % image.size(); });
    std::size_t refused = 0;
    for (const std::size_t place : places) {
        const auto change = static_cast<uint8_t>(1 + random() % 255);
        image[place] ^= change;
        const auto report = images::checkImage(image);
        image[place] ^= change;
        refused += report.fault ? 1 : 0;
        if (report.fault) {
            EXPECT_LE(report.fault->offset, image.size()) << place;
        } else {
            EXPECT_EQ(report.configuration, content) << place << " by " << int{change};
        }
    }
    EXPECT_GT(refused, places.size() / 2);
    EXPECT_EQ(images::checkImage(image).configuration, content);
}

}  // namespace
