#pragma once

// The file names under which the updater finds its firmware images: what an image is for stands in its name.
//
//   VMBM12A.xsv    VornMX-B, flavour M, version 12, board revision A
//   DX8W03NC.xsv   Vorn DX8, flavour W, version 3, a board without revision

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/FpgaConfiguration.h"
#include "tools/images/CardModels.h"

namespace tools {

// Flavour 'M' or 'W', version 0 to 99, revision 0 to 26.
[[nodiscard]] std::string imageFileName(const CardModel& model, char flavour, uint8_t version,
                                        uint8_t boardRevision);

// The name of the image that puts this into a PROM. Nothing for a configuration that no name can tell.
[[nodiscard]] std::optional<std::string> imageFileNameFor(const simulator::FpgaConfiguration& content);

// Whether the updater would take a file of that name for an image of some card.
[[nodiscard]] bool isImageFileName(std::string_view name);

}  // namespace tools
