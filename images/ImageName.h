#pragma once

// The file names under which the updater finds its firmware images: what an image is for stands in its name.
//
//   VMBM12A.xsv    VornMX-B, flavour M, version 12, board revision A
//   DX8W03NC.xsv   Vorn DX8, flavour W, version 3, a board without revision

#include <cstdint>
#include <string>
#include <string_view>

#include "images/CardModels.h"

namespace images {

constexpr uint8_t kHighestVersion = 99;

// Flavour 'M' or 'W', version 0 to kHighestVersion, revision 0 to 26.
[[nodiscard]] std::string imageFileName(const CardModel& model, char flavour, uint8_t version,
                                        uint8_t boardRevision);

// Whether the updater would take a file of that name for an image of some card.
[[nodiscard]] bool isImageFileName(std::string_view name);

}  // namespace images
