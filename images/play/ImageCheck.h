#pragma once

// Whether an image can ship: every command obeys CommandRules and plays on a simulated card whose PROM was
// full of something else, the PROM is ready for use afterwards, and XCOMPLETE is the last byte.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "images/AccessCount.h"
#include "simulator/jtag/FpgaConfiguration.h"

namespace images {

struct ImageFault {
    std::size_t offset;  // of the command, or of what stands where one should
    std::string reason;  // one sentence
};

struct ImageReport {
    std::optional<ImageFault> fault;  // the first one
    // Up to the fault, or of the whole image.
    std::size_t commands = 0;
    Accesses accesses;
    // What the card finds in its PROM afterwards. Nothing for another content, of which only the maker of the
    // card's logic knows what it is for, and for an image with a fault.
    std::optional<simulator::FpgaConfiguration> configuration;
};

// The hour that CommandRules permits is simulated in some seconds.
[[nodiscard]] ImageReport checkImage(std::span<const uint8_t> image);

}  // namespace images
