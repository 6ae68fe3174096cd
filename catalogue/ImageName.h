#pragma once

// The file names of firmware images, which say what an image is for:
//
//   characters 0-2   the model's tag
//   character  3     flavour: M or W
//   characters 4-5   version, two decimal digits
//   characters 6-7   board revision: a letter alone, or NC for a board without one
//   then             ".xsv"
//
// K40W07B.xsv is version 7 of flavour W for a Vorn K40 of board revision B, DX8M05NC.xsv is version 5 of
// flavour M for a Vorn DX8, whose boards have no revision.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

struct ImageName {
    uint16_t modelCode;
    char flavour;
    uint16_t version;
    uint16_t boardRevision;
};

// Reads any name, as the updater has always done: the tag by the arithmetic of its characters, so that VMD is
// one more tag of the Vorn K40; every flavour but M as W; the version up to its first foreign character. A
// name that is too short, or stands for no model or board, gets values that no card has.
ImageName readImageName(std::string_view name);

// The file name, or nothing for a model, flavour, version or board revision that no name can hold.
std::optional<std::string> imageFileName(const ImageName& name);

// Whether a file of that name is an image for some card, written in the one way that imageFileName has.
bool isImageFileName(std::string_view name);

}  // namespace catalogue
