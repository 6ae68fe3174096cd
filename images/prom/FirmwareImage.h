#pragma once

// Makes the firmware image that programs given content into a card's PROM.

#include <cstdint>
#include <span>
#include <vector>

#include "simulator/jtag/FpgaConfiguration.h"

namespace images {

// An XSVF image that checks the PROM's identification code, erases the PROM, programs as many of its pages as
// the content has, and reads each of them back. A player stops at the first thing that is not as it should
// be; the PROM is then as far as it got. Firmware has all kPromPages pages, laid out as
// simulator/jtag/FpgaConfiguration.h says; the content is a whole number of them in any case.
std::vector<uint8_t> makeFirmwareImage(std::span<const uint8_t> content);

}  // namespace images
