#pragma once

// An FPGA configuration described for people and as JSON.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "simulator/jtag/FpgaConfiguration.h"

namespace images {

// "VornMX-B", or "model 0x26" for a code that no model has.
std::string modelText(uint8_t code);

// "board A", or "board without revision".
std::string boardText(uint8_t revision);

// "VornMX-B, board A, firmware M10 of 2004-05-17", or "no configuration".
std::string contentText(const std::optional<simulator::FpgaConfiguration>& configuration);

// "A" or "NC", or null for a revision beyond Z.
nlohmann::ordered_json boardJson(uint8_t revision);

// {"model": "VornMX-B", "board": "A", "firmware": "M10", "date": "2004-05-17"}, or null. An unknown model,
// board or date is null.
nlohmann::ordered_json contentJson(const std::optional<simulator::FpgaConfiguration>& configuration);

}  // namespace images
