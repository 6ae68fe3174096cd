#pragma once

// Firmware dates as people write them and as a card's date register holds them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace images {

// "2006-03-17" as bits 0-4 day, bits 8-11 month, bits 12-15 year minus 2000. Nothing for a text that is not a
// date in that form, or for a year outside 2000 to 2015, which the register cannot hold.
[[nodiscard]] std::optional<uint16_t> firmwareDate(std::string_view text);

// What is wrong with such a text, in a sentence; empty for a good one.
[[nodiscard]] std::string firmwareDateFault(std::string_view text);

// "2006-03-17"; nothing when the register holds no month.
[[nodiscard]] std::optional<std::string> firmwareDateText(uint16_t date);

}  // namespace images
