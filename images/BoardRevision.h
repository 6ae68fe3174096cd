#pragma once

// Board revisions as people and image names write them, and as a card's registers hold them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace images {

// 1 for "A" to 26 for "Z", and 0 for "NC", a board without a revision. Nothing for other texts.
[[nodiscard]] std::optional<uint8_t> boardRevisionNamed(std::string_view text);
constexpr const char* kBoardRevisionForm =
    "A board is a letter from A to Z, or NC for one without a revision.";

// The other way round; nothing for a revision above 26.
[[nodiscard]] std::optional<std::string> boardRevisionName(uint8_t revision);

}  // namespace images
