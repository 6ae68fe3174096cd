// One byte of an image is wrong. Until the tool finds a fault, player and tool agree on the length of every
// command and on the register accesses that it makes.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <sstream>
#include <string>

#include "images/CommandReader.h"
#include "images/Listing.h"
#include "images/ListingReader.h"
#include "images/prom/CommandRules.h"
#include "images/prom/FirmwareImage.h"
#include "tests/images/prom/AnsweringPort.h"
#include "xsvf/JtagPort.h"
#include "xsvf/Player.h"

namespace {

constexpr uint64_t manyClocks = 30'000;

// Whether bits are expected beyond those that are shifted, which no card can answer.
bool expectsTooMuch(const tagSXsvfInfo& info) {
    return info.lDrBits % 8 != 0 && info.lvExpected.aucValue[0] >> (info.lDrBits % 8) != 0;
}

// An image on its way through player, reader and rules together. A copy continues independently.
struct Passage {
    tagSXsvfInfo info;
    images::CommandReader reader;
    images::CommandRules rules;
    bool isFaulty = false;  // according to the tool; the player may continue for a while

    // Takes one command. Returns false if it was the last.
    bool step(AnsweringPort& port) {
        const auto offset = static_cast<uint32_t>(reader.offset());
        if (!isFaulty) {
            const auto command = reader.next();
            isFaulty = !command || rules.faultOf(*command);
            EXPECT_TRUE(!command || !images::listingLine(offset, *command).empty());
        }
        try {
            xsvfRun(&info);
        } catch (const PortIsClosed&) {
            EXPECT_TRUE(isFaulty) << offset;
            return false;
        }
        if (!isFaulty) {
            EXPECT_TRUE(info.iResult == kXsvfNoError || expectsTooMuch(info)) << offset;
            isFaulty = info.iResult != kXsvfNoError;
        }
        if (!isFaulty) {
            EXPECT_EQ(gulCurrentOffset, reader.offset());
            EXPECT_EQ(port.accesses, rules.accesses()) << offset;
        }
        return info.iResult == kXsvfNoError && info.ucIsComplete == 0;
    }
};

class DamagedImageTest : public testing::Test {
  protected:
    void open(std::vector<uint8_t>& image) {
        passage_.emplace(Passage{{}, images::CommandReader(image), {}});
        port_.open(image, 0, passage_->info, manyClocks);
        port_.accesses = {.stores = 2};
        xsvfInitialize(&passage_->info);
    }

    // Takes some commands from the current place with a byte changed, and then returns there.
    void meet(std::vector<uint8_t>& image, std::size_t place, uint8_t change, int commands) {
        Passage damaged = *passage_;
        const uint32_t offset = gulCurrentOffset;
        const images::Accesses before = port_.accesses;
        image[place] ^= change;
        port_.open(image, offset, damaged.info, manyClocks);
        while (commands > 0 && damaged.step(port_)) {
            --commands;
        }
        image[place] ^= change;
        port_.accesses = before;
        port_.open(image, offset, passage_->info, manyClocks);
    }

    uint8_t anyChange() { return static_cast<uint8_t>(1 + random_() % 255); }

    AnsweringPort port_;
    std::optional<Passage> passage_;
    std::mt19937 random_;
};

// The bytes before the damage are unchanged, so each damaged image continues from the sound one. Sixteen
// commands later the next page begins.
TEST_F(DamagedImageTest, PlayerAndToolAgreeAtTenThousandPlaces) {
    auto image = images::makeFirmwareImage(std::span<const uint8_t, simulator::kPromBytes>(
        simulator::encodeConfiguration({0x21, 1, 'M', 12, 0x6311})));
    std::vector<std::size_t> places(10'000);
    std::ranges::generate(places, [&] { return random_() % image.size(); });
    std::ranges::sort(places);
    open(image);
    for (const std::size_t place : places) {
        for (;;) {
            images::CommandReader ahead = passage_->reader;
            ASSERT_TRUE(ahead.next());
            if (ahead.offset() > place) {
                break;
            }
            port_.clocksLeft = manyClocks;
            ASSERT_TRUE(passage_->step(port_));
            ASSERT_FALSE(passage_->isFaulty);
        }
        meet(image, place, anyChange(), 16);
        ASSERT_FALSE(HasFailure()) << place;
    }
}

TEST_F(DamagedImageTest, PlayerAndToolAgreeOnEveryCommand) {
    std::ifstream file(EVERY_COMMAND);
    const std::string listing{std::istreambuf_iterator<char>(file), {}};
    auto image = images::assemble(listing);
    open(image);
    for (std::size_t place = 0; place < image.size(); ++place) {
        for (int bit = 0; bit < 8; ++bit) {
            meet(image, place, static_cast<uint8_t>(1 << bit), 1000);
            ASSERT_FALSE(HasFailure()) << place;
        }
    }
    while (passage_->step(port_)) {
    }
    EXPECT_FALSE(passage_->isFaulty);
    EXPECT_EQ(gulCurrentOffset, image.size());
    std::istringstream stream(std::string(image.begin(), image.end()));
    EXPECT_EQ(images::accessesOf(stream), port_.accesses);
}

}  // namespace
