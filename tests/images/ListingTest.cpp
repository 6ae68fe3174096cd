#include "images/Listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "files/UserError.h"
#include "images/ListingReader.h"

namespace {

using Image = std::vector<uint8_t>;
using images::assemble;
using images::listingOf;

TEST(ListingTest, AnyBytesSurviveARoundTrip) {
    std::mt19937 random;
    for (int round = 0; round < 20'000; ++round) {
        Image image(random() % 40);
        // Small values in every other round: bytes of any value rarely make a known command or a small size.
        std::ranges::generate(image,
                              [&] { return static_cast<uint8_t>(random() % (round % 2 == 0 ? 24 : 256)); });
        ASSERT_EQ(assemble(listingOf(image)), image) << listingOf(image);
    }
}

// In both directions a few bytes can expand to a thousand.
TEST(ListingTest, RefusesToGrowBeyondItsLimit) {
    const Image steps{0x0B, 0xFF, 0x00};  // XSDRINC with 255 values of no size
    EXPECT_GT(listingOf(steps).size(), 1000U);
    EXPECT_THROW(listingOf(steps, 1000), files::UserError);
    try {
        assemble("XSDRSIZE 8000\nXSDR 0x0\nXSDR 0x0\n", "it", 1500);
        FAIL();
    } catch (const files::UserError& error) {
        EXPECT_STREQ(error.what(), "it, line 3: The image would be longer than 1500 bytes.");
    }
}

}  // namespace
