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

inline constexpr const char* kBoardRevisionForm =
    "A board is a letter from A to Z, or NC for one without a revision.";

// 1 for 'A'. A character that is not a capital letter gives 0 or a value above kHighestBoardRevision.
constexpr uint16_t boardRevisionOfLetter(char letter) {
    return static_cast<uint16_t>(static_cast<unsigned char>(letter) - 'A' + 1);
}

// "NC" for 0, "A" for 1 and so on. Above kHighestBoardRevision it is whichever character follows, in 8 bits.
inline std::string boardRevisionText(uint16_t revision) {
    return revision == 0 ? std::string(kNoBoardRevision)
                         : std::string(1, static_cast<char>(static_cast<uint8_t>('A' - 1 + revision)));
}

// 0 for "NC" and 1 to 26 for "A" to "Z". Nothing for other texts.
inline std::optional<uint8_t> parseBoardRevision(std::string_view text) {
    if (text == kNoBoardRevision) {
        return uint8_t{0};
    }
    if (text.size() == 1 && text[0] >= 'A' && text[0] <= 'Z') {
        return static_cast<uint8_t>(boardRevisionOfLetter(text[0]));
    }
    return std::nullopt;
}

}  // namespace catalogue
