#pragma once

// Turns what a card's PROM is to hold into the firmware image that puts it there.

#include <cstdint>
#include <span>
#include <vector>

#include "simulator/FpgaConfiguration.h"

namespace images {

// An XSVF image that checks the PROM's identification code, erases the PROM, programs all its pages and reads
// every page back. A player stops at the first thing that is not as it should be; the PROM is then as far as
// it got. The page layout of the content is that of simulator/FpgaConfiguration.h.
[[nodiscard]] std::vector<uint8_t> makeFirmwareImage(std::span<const uint8_t, simulator::kPromBytes> prom);

}  // namespace images
