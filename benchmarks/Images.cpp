#include "benchmarks/Images.h"

#include <algorithm>
#include <array>
#include <random>
#include <span>
#include <stdexcept>

#include "images/prom/FirmwareImage.h"
#include "simulator/jtag/FpgaConfiguration.h"
#include "xsvf/Assembler.h"

namespace benchmarks {
namespace {

using Assembler = XsvfAssembler<std::vector<uint8_t>>;

// Zeroes the operand of the XTDOMASK command that has this mask.
void clearMask(std::vector<uint8_t>& image, std::span<const uint8_t> mask) {
    std::vector<uint8_t> command{static_cast<uint8_t>(XsvfOpcode::XTDOMASK)};
    command.insert(command.end(), mask.begin(), mask.end());
    const auto found = std::search(image.begin(), image.end(), command.begin(), command.end());
    if (found == image.end()) {
        throw std::logic_error("the firmware image does not have the expected masks");
    }
    std::fill_n(found + 1, mask.size(), uint8_t{0});
}

}  // namespace

std::vector<uint8_t> firmwareImage() {
    const auto prom = simulator::encodeConfiguration(
        {.modelCode = 0x21, .boardRevision = 1, .flavour = 'M', .version = 12, .date = 0x6311});
    return images::makeFirmwareImage(std::span<const uint8_t, simulator::kPromBytes>(prom));
}

std::vector<uint8_t> unmaskedFirmwareImage() {
    std::vector<uint8_t> image = firmwareImage();
    // The masks for the identification code and for reading pages back. The mask for programming pages
    // compares a single bit, which is 0 anyway.
    constexpr std::array<uint8_t, 5> identification{0x00, 0x1F, 0xFF, 0xFF, 0xFF};
    std::array<uint8_t, simulator::kPageBytes + 1> everyBit{};
    everyBit.fill(0xFF);
    clearMask(image, identification);
    clearMask(image, everyBit);
    return image;
}

std::vector<uint8_t> imageOfShifts(std::size_t bytes) {
    std::vector<uint8_t> image;
    image.reserve(bytes);
    Assembler xsvf(image);
    std::array<uint8_t, 64> data{};
    xsvf.XSDRSIZE(data.size() * 8);
    xsvf.XTDOMASK(data);
    std::minstd_rand random;
    while (image.size() + 1 + 2 * data.size() + 1 <= bytes) {
        std::ranges::generate(data, [&] { return static_cast<uint8_t>(random() >> 8); });
        xsvf.XSDRTDO(data, 0);
    }
    xsvf.XCOMPLETE();
    return image;
}

}  // namespace benchmarks
