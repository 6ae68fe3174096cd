#pragma once

// Board revisions, as people and the names of firmware images write them and as a card's register holds them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

// How a board without a revision is written; its register holds 0.
inline constexpr std::string_view kNoBoardRevision = "NC";

inline constexpr uint8_t kHighestBoardRevision = 26;  // Z

// "NC" for 0, "A" for 1 and so on. Above kHighestBoardRevision it is the character that comes next, in 8
// bits.
std::string boardRevisionText(uint16_t revision);

// 0 for "NC" and 1 to 26 for "A" to "Z". Nothing for other texts.
std::optional<uint8_t> parseBoardRevision(std::string_view text);
inline constexpr const char* kBoardRevisionForm =
    "A board is a letter from A to Z, or NC for one without a revision.";

// 1 for 'A'. What other characters give is no board's revision, unless a board has one above 26.
constexpr uint16_t boardRevisionOfLetter(char letter) {
    return static_cast<uint16_t>(static_cast<unsigned char>(letter) - ('A' - 1));
}

}  // namespace catalogue
