#pragma once

// What the tool says of an image that it has judged.

#include <string>

#include "images/play/ImageCheck.h"

namespace tools {

// Of a content without a configuration, in words that follow a subject.
constexpr const char* kUnknownContent = "content that is not a configuration the simulated card can read";

// "offset 0x108044: The comparison fails on a simulated card."
[[nodiscard]] std::string faultText(const images::ImageFault& fault);

// "7702 commands, 275756419 register accesses, about 92 s on a card"
[[nodiscard]] std::string playText(const images::ImageReport& report);

}  // namespace tools
