#pragma once

// What an FPGA reads from its configuration PROM, and the layout of the PROM's bytes.
//
//   offset  bytes  content (numbers big-endian)
//        0      4  "VFPG"
//        4      1  layout version, 1
//        5      1  model code
//        6      1  board revision
//        7      1  flavour, 'M' or 'W'
//        8      1  firmware version
//        9      1  0
//       10      2  date
//       12 262128  filler that stands for the logic, derived from the fields above
//   262140      4  CRC-32 (IEEE 802.3) over all bytes before it
//
// Page p is the bytes from p * 512; bit b of a page's byte i is bit i * 8 + b of the page data register, so
// bit 0 of the first byte is shifted first.

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "simulator/jtag/PromCells.h"

namespace simulator {

constexpr std::array<uint8_t, 4> kConfigurationSignature{'V', 'F', 'P', 'G'};

struct FpgaConfiguration {
    uint8_t modelCode;      // of a model in the catalogue
    uint8_t boardRevision;  // 0 none, 1 A, 2 B, ...
    char flavour;           // 'M': registers big-endian in memory, 'W': little-endian
    uint8_t version;
    uint16_t date;  // bits 0-4 day, bits 8-11 month, bits 12-15 year minus 2000, as in the date register

    bool operator==(const FpgaConfiguration&) const = default;
};

// The PROM content, kPromBytes long, for a configuration. The same fields give the same bytes on every
// computer.
std::vector<uint8_t> encodeConfiguration(const FpgaConfiguration& configuration);

// The configuration in a PROM's bytes; nothing if the length, header or checksum is wrong. The caller checks
// that the model fits the board.
std::optional<FpgaConfiguration> decodeConfiguration(std::span<const uint8_t> prom);

}  // namespace simulator
