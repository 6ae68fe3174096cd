// Firmware for simulated cards is recognised however the image brings it into the PROM.

#include "images/prom/FirmwareKind.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "images/ListingReader.h"
#include "images/prom/FirmwareImage.h"
#include "simulator/jtag/FpgaConfiguration.h"

namespace {

using images::FirmwareKind;
using images::firmwareKindOf;
using Bytes = std::vector<uint8_t>;

Bytes imageOf(const Bytes& content, std::size_t cutOff = 0) {
    Bytes image = images::makeFirmwareImage(content);
    image.resize(image.size() - cutOff);
    return image;
}

TEST(FirmwareKindTest, DependsOnTheContentAlone) {
    Bytes content = simulator::encodeConfiguration({0x23, 2, 'W', 7, 0x5B02});
    EXPECT_EQ(firmwareKindOf(imageOf(content)), FirmwareKind::simulated);
    content.back() ^= 1;  // the checksum
    content[4] = 2;       // the layout
    EXPECT_EQ(firmwareKindOf(imageOf(content)), FirmwareKind::simulated);
    EXPECT_EQ(firmwareKindOf(imageOf(content, 400'000)), FirmwareKind::simulated);
    std::rotate(content.begin(), content.begin() + 512, content.end());  // another page comes first
    EXPECT_EQ(firmwareKindOf(imageOf(content)), FirmwareKind::simulated);

    // What follows the signature does not count.
    for (const std::size_t place : {0U, 1U, 2U, 3U}) {
        content = simulator::encodeConfiguration({0x23, 2, 'W', 7, 0x5B02});
        content[place] ^= 0x10;
        EXPECT_EQ(firmwareKindOf(imageOf(content)), FirmwareKind::other) << place;
    }
    EXPECT_EQ(firmwareKindOf(imageOf(content, 1)), FirmwareKind::unreadable);
    EXPECT_EQ(firmwareKindOf({}), FirmwareKind::unreadable);
}

std::string programPage(const std::string& address, const std::string& page) {
    return "XSIR 8 0xEB\nXSDRSIZE 16\nXSDRE " + address + "\nXSIR 8 0xED\nXSDRSIZE 72\nXSDRE " + page +
           "\nXSIR 8 0xEA\n";
}

// A page keeps the bits that are 1 in all passes.
TEST(FirmwareKindTest, DependsOnWhatSeveralPassesLeave) {
    const std::string first = programPage("0x20", "0x47504F5F00FF00FF00");
    const std::string second = programPage("0x20", "0x4FF8F65600FF00FF00");
    const std::string between = programPage("0x40", "0x000000000000000000");
    EXPECT_EQ(firmwareKindOf(images::assemble(first + between + second + "XCOMPLETE")),
              FirmwareKind::simulated);
    EXPECT_EQ(
        firmwareKindOf(images::assemble(first + programPage("0x60", "0x4FF8F65600FF00FF00") + "XCOMPLETE")),
        FirmwareKind::other);
}

// "VFPG" is 0x47504656 as it is shifted: the lowest bit first.
TEST(FirmwareKindTest, DoesNotDependOnHowTheShiftsAreDivided) {
    for (const char* const shifts :
         {"XSDRSIZE 33 XSDR 0x08EA08CAC", "XSDRSIZE 40 XSDRTDO 0x4750465655 0x0",
          "XSDRSIZE 13 XSDRB 0x0656 XSDRSIZE 1 XSDRC 0x0 XSDRSIZE 18 XSDRE 0x11D41",
          "XSDRSIZE 5 XSDRTDOB 0x16 0x0 XSDRSIZE 20 XSDRTDOC 0xA8232 0x0 XSDRSIZE 7 XSDRTDOE 0x23 0x0",
          "XENDDR 1 XSDRSIZE 16 XSDR 0x4656 XSDR 0x4750",
          "XSDRSIZE 8 XSETSDRMASKS 0x00 0xFF XSDRINC 0x56 0x46 0x50 0x47",
          "XSDRSIZE 40 XSETSDRMASKS 0x1 0x10FF0040 XSDRINC 0x57AA4614 0x355 0xA1"}) {
        std::string listing = std::string(shifts) + " XCOMPLETE";
        for (std::size_t at = 1; (at = listing.find(" X", at)) != std::string::npos;) {
            listing[at] = '\n';
        }
        EXPECT_EQ(firmwareKindOf(images::assemble(listing)), FirmwareKind::simulated) << shifts;
    }
    // The same bits, but expected rather than shifted in.
    EXPECT_EQ(firmwareKindOf(images::assemble("XSDRSIZE 32\nXTDOMASK 0x47504656\nXSDRTDO 0x0 0x47504656\n"
                                              "XSIR 32 0x47504656\nXCOMPLETE")),
              FirmwareKind::other);
}

}  // namespace
