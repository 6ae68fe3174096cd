#pragma once

// Checks whether an image can ship: every command obeys CommandRules and plays on a simulated card whose PROM
// holds something else, the PROM is ready for use afterwards, and XCOMPLETE is the last byte.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "images/AccessCount.h"
#include "simulator/jtag/FpgaConfiguration.h"

namespace images {

struct ImageFault {
    std::size_t offset;  // of the command, or of what is there instead of one
    std::string reason;  // one sentence
};

struct ImageReport {
    std::optional<ImageFault> fault;  // the first
    // Up to the fault, or for the whole image.
    std::size_t commands = 0;
    Accesses accesses;
    // The PROM's content afterwards. Nothing if the image has a fault, or if the content is not a
    // configuration that the simulated card can read.
    std::optional<simulator::FpgaConfiguration> configuration;
};

// Takes some seconds for an image of an hour, the longest that CommandRules permits.
[[nodiscard]] ImageReport checkImage(std::span<const uint8_t> image);

// What is wrong with the file name of an image that has this content, in one sentence, or nothing. An image
// without a name must still have content that a name can describe. Unknown content fits the name of any card.
[[nodiscard]] std::optional<std::string> nameFault(const std::optional<simulator::FpgaConfiguration>& content,
                                                   const std::optional<std::string>& fileName);

}  // namespace images
