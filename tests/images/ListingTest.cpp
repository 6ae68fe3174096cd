#include "images/Listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "images/ListingReader.h"

namespace {

using Image = std::vector<uint8_t>;
using images::imageOf;
using images::listingOf;

TEST(Listing, showsWhatIsThere) {
    const std::tuple<const char*, Image, const char*> cases[] = {
        {"nothing", {}, ""},
        {"counts and states",
         {7, 8, 18, 1, 4, 0, 0, 0x36, 0xB0, 19, 1, 20, 1, 20, 0, 0},
         "000000: XREPEAT 8\n000002: XSTATE Run-Test/Idle\n000004: XRUNTEST 14000\n000009: XENDIR Pause-IR\n"
         "00000B: XENDDR Pause-DR\n00000D: XENDDR Run-Test/Idle\n00000F: XCOMPLETE\n"},
        {"states that the player lacks",
         {18, 4, 19, 2, 18, 0x22},
         "000000: XSTATE 0x04\n000002: XENDIR 0x02\n000004: XSTATE Pause-IR\n"},
        {"values and none",
         {2, 13, 0x1F, 0xFF, 3, 8, 0, 0, 0, 9, 9, 0, 1, 1, 2},
         "000000: XSIR 13 0x1FFF\n000004: XSDR 0x0\n000005: XSDRSIZE 9\n00000A: XSDRTDO 0x0001 0x0102\n"},
        {"steps, as wide as the mask has ones",
         {8, 0, 0, 0, 16, 10, 0, 1, 0xFF, 1, 11, 0, 5, 2, 0, 6, 1, 7},
         "000000: XSDRSIZE 16\n000005: XSETSDRMASKS 0x0001 0xFF01\n00000A: XSDRINC 0x0005 0x0006 0x0107\n"},
        {"what is no command",
         {7, 1, 5, 7},
         "000000: XREPEAT 1\n; no command of the player\n000002: BYTES 0x0507\n"},
        {"a cut", {8, 0, 0}, "; a command that the end cuts off\n000000: BYTES 0x080000\n"},
        {"a surplus", {0, 0}, "000000: XCOMPLETE\n; behind XCOMPLETE\n000001: BYTES 0x00\n"},
        // The player keeps 16 bits of the count of bytes: here 1.
        {"a size beyond all limits",
         {8, 0, 8, 0, 8, 3, 0xAB},
         "000000: XSDRSIZE 524296\n000005: XSDR 0xAB\n"}};
    for (const auto& [name, image, listing] : cases) {
        EXPECT_EQ(listingOf(image), listing) << name;
        EXPECT_EQ(std::get<Image>(imageOf(listing)), image) << name;
    }
}

TEST(Listing, ofAnyBytesAssemblesToThem) {
    std::mt19937 random;
    for (int round = 0; round < 20'000; ++round) {
        Image image(random() % 40);
        // Few sizes are small and few opcodes known among bytes of any kind.
        std::ranges::generate(image,
                              [&] { return static_cast<uint8_t>(random() % (round % 2 == 0 ? 24 : 256)); });
        ASSERT_EQ(std::get<Image>(imageOf(listingOf(image))), image) << listingOf(image);
    }
}

// A few bytes can stand for a thousand in either direction.
TEST(Listing, doesNotGrowOutOfBounds) {
    const Image steps{0x0B, 0xFF, 0x00};  // XSDRINC with 255 values of no size
    EXPECT_GT(listingOf(steps).size(), 1000U);
    EXPECT_THROW(static_cast<void>(listingOf(steps, 1000)), std::length_error);
    const auto result = imageOf("XSDRSIZE 8000\nXSDR 0x0\nXSDR 0x0\n", 1500);
    ASSERT_TRUE(std::holds_alternative<images::ListingError>(result));
    EXPECT_EQ(std::get<images::ListingError>(result).line, 3U);
    EXPECT_EQ(std::get<images::ListingError>(result).reason, "The image would be longer than 1500 bytes.");
}

TEST(ListingReader, takesWhatEditorsMakeOfLineEnds) {
    const Image image{0x07, 3, 0x00};
    for (const char* listing :
         {"XREPEAT 3\r\nXCOMPLETE\r\n", "XREPEAT 3\rXCOMPLETE", "\xEF\xBB\xBFXREPEAT 3\n\nXCOMPLETE"}) {
        EXPECT_EQ(std::get<Image>(imageOf(listing)), image) << listing;
    }
}

TEST(ListingReader, saysWhereAndWhyAListingIsRefused) {
    const std::tuple<const char*, std::size_t, const char*> cases[] = {
        {"; all is well\n\nXDSR 0x1\n", 3, "\"XDSR\" is not a command."},
        {"XREPEAT", 1, "XREPEAT takes 1 operand, not 0."},
        {"XSDRTDO 0x0 ; 0x0", 1, "XSDRTDO takes 2 operands, not 1."},
        {"XCOMPLETE\r\nXREPEAT 256", 2, "\"256\" is more than 255, the most here."},
        {"XRUNTEST 4294967296", 1, "\"4294967296\" is more than 4294967295, the most here."},
        {"XSDRSIZE 0x", 1, "\"0x\" is not a number."},
        {"XSDRSIZE -1", 1, "\"-1\" is not a number."},
        {"XSTATE Pause", 1, "\"Pause\" is not a state that can stand here."},
        {"XENDIR Pause-DR", 1, "\"Pause-DR\" is not a state that can stand here."},
        {"XSDRSIZE 9\nXSDR 0x01FF\nXSDR 0x10000", 3,
         "The value \"0x10000\" needs 3 bytes; the size in force here is 2."},
        {"XSDR 12", 1, "\"12\" is not a value; values are hexadecimal and begin with 0x."},
        {"BYTES 0x123", 1, "BYTES takes two digits for every byte."},
        {"XREPEAT \x1B[2J", 1, "\"?[2J\" is not a number."}};
    for (const auto& [listing, line, reason] : cases) {
        const auto result = imageOf(listing);
        ASSERT_TRUE(std::holds_alternative<images::ListingError>(result)) << listing;
        EXPECT_EQ(std::get<images::ListingError>(result).line, line) << listing;
        EXPECT_EQ(std::get<images::ListingError>(result).reason, reason) << listing;
    }
}

}  // namespace
