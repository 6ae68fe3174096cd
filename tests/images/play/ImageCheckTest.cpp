#include "images/play/ImageCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <random>

#include "images/ListingReader.h"
#include "images/prom/FirmwareImage.h"
#include "simulator/FpgaConfiguration.h"

namespace {

TEST(ImageCheck, FindsTheFirstFault) {
    const std::string compared = "XSDRSIZE 9\nXTDOMASK 0x1FF\n";                    // 8 bytes
    const std::string programming = "XSIR 13 0x1D1F\nXSDRSIZE 7\nXSDRE 0x68\n";     // 11 bytes
    const std::string erase = programming + "XRUNTEST 15000000\nXSIR 13 0x1D9F\n";  // 20 bytes
    const std::string steps = "XSDRSIZE 2048\nXTDOMASK 0x0\nXSDRTDO 0x0 0x0\nXSETSDRMASKS 0x0 0x0\n";
    const std::tuple<std::string, std::size_t, const char*> cases[] = {
        {"", 0, "The image ends without XCOMPLETE."},
        {"XREPEAT 3", 2, "The image ends without XCOMPLETE."},
        {"XREPEAT 3\nBYTES 0x0800", 2, "The image ends within XSDRSIZE."},
        {"XREPEAT 3\nBYTES 0x1500", 2, "0x15 is not a command that the player has."},
        {"XREPEAT 3\nXCOMPLETE\nXCOMPLETE", 3, "XCOMPLETE ends the image here, with 1 byte to come."},
        {"XSDRSIZE 8000\nXSDRSIZE 8001", 5, "XSDRSIZE asks for 8001 bits; the player takes up to 8000."},
        {"XSDRSIZE 0x00080008", 0, "XSDRSIZE asks for 524296 bits; the player takes up to 8000."},
        {"XRUNTEST 0x80000000", 0, "XRUNTEST 2147483648 is a negative wait to the player, and so none."},
        {"XRUNTEST 60000000\nXRUNTEST 60000001", 5,
         "XRUNTEST waits 60000001 microseconds; nothing on a card takes more than 60000000."},
        {programming + "XRUNTEST 1400001\nXSIR 13 0x1D5F", 16,
         "The program instruction is given 1400001 microseconds; a row takes 14000."},
        {"XENDIR 2", 0, "XENDIR 2 is not an end state; only 0 and 1 are."},
        {"XSTATE 4", 0, "XSTATE 0x04 is none of the player's six states."},
        {"XSTATE Run-Test/Idle\nXSTATE Pause-DR", 2, "XSTATE cannot lead from Run-Test/Idle to Pause-DR."},
        {"XSTATE Shift-IR\nXSTATE Pause-DR", 2, "XSTATE cannot lead from Shift-IR to Pause-DR."},
        {"XSDRSIZE 9\nXSDRTDO 0x0 0x0", 5, "XSDRTDO uses a mask, but no XTDOMASK has loaded any."},
        {compared + "XSDRSIZE 17\nXSDRTDO 0x0 0x0", 13,
         "XSDRTDO has data of 3 bytes, but a mask of 2 bytes."},
        {compared + "XSDR 0x0", 8, "XSDR uses an expected value, but no XSDRTDO has loaded any."},
        {"XSDRSIZE 9\nXTDOMASK 0x0\nXSDRTDO 0x0 0x0\nXSDRINC 0x0\nXSDRINC 0x0 0x0", 17,
         "XSDRINC uses step masks, but no XSETSDRMASKS has loaded any."},
        {steps + "XSDRINC 0x0 0x0", 1288, "XSDRINC has step masks of 256 bytes; the player takes up to 255."},
        {"XSIR 13 0x1D9F", 0, "Erase was asked for outside programming mode."},
        {programming + "XRUNTEST 14999000\nXSIR 13 0x1D9F\nXSIR 13 0x1FFF", 20,
         "Erase was given less than 15000000 microseconds."},
        {programming + "XRUNTEST 14999000\nXSIR 13 0x1D9F\nXCOMPLETE", 20,
         "The image ends before the PROM has had its time for the last operation."},
        {compared + "XSDRTDO 0x0 0x1FF", 8, "The comparison fails on a simulated card."},
        {"XCOMPLETE", 1, "The image ends and has written nothing."},
        {erase + "XCOMPLETE", 20, "The image ends while the PROM is still in programming mode."},
        {programming + "XSIR 13 0x1DBF\nXSDRSIZE 4097\nXSDRE 0x0\nXRUNTEST 14000\nXSIR 13 0x1D5F", 539,
         "The page at address 0x0000 was programmed again without an erase."},
    };
    for (const auto& [listing, offset, reason] : cases) {
        const auto image = std::get<std::vector<uint8_t>>(images::imageOf(listing));
        const auto report = images::checkImage(image);
        ASSERT_TRUE(report.fault) << listing;
        EXPECT_EQ(report.fault->reason, reason) << listing;
        EXPECT_EQ(report.fault->offset, offset) << listing;
    }
    const auto erasing = images::imageOf(erase + "XRUNTEST 4000\nXSIR 13 0x1E1F\nXCOMPLETE");
    EXPECT_FALSE(images::checkImage(std::get<std::vector<uint8_t>>(erasing)).fault);
    std::string hours = "XRUNTEST 60000000\n";
    for (int minute = 0; minute < 61; ++minute) {
        hours += "XSIR 0 0x0\n";
    }
    const auto tooLong = images::checkImage(std::get<std::vector<uint8_t>>(images::imageOf(hours)));
    EXPECT_EQ(tooLong.fault.value().reason,
              "By the end of XSIR the image has taken more than an hour on a card.");
}

// What is programmed is compared with what is read back, so no single byte can put something else into the
// PROM unnoticed: not in the commands before the first page, and not at places all over the image.
TEST(ImageCheck, PassesADamagedImageOnlyIfItWritesTheSame) {
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
