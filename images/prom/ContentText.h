#pragma once

// What a configuration is for, in words and as JSON.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "simulator/jtag/FpgaConfiguration.h"

namespace images {

// "VornMX-B", or "model 0x26" for one that there is not.
[[nodiscard]] std::string modelText(uint8_t code);

// "board A", or "board without revision".
[[nodiscard]] std::string boardText(uint8_t revision);

// "VornMX-B, board A, firmware M10 of 2004-05-17", or "no configuration".
[[nodiscard]] std::string contentText(const std::optional<simulator::FpgaConfiguration>& configuration);

// "A" or "NC", or null for a revision beyond Z.
[[nodiscard]] nlohmann::ordered_json boardJson(uint8_t revision);

// {"model": "VornMX-B", "board": "A", "firmware": "M10", "date": "2004-05-17"}, or null. What is no known
// model, board or date is null.
[[nodiscard]] nlohmann::ordered_json contentJson(
    const std::optional<simulator::FpgaConfiguration>& configuration);

}  // namespace images
