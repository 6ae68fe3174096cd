#include "catalogue/BoardRevision.h"

namespace catalogue {

std::string boardRevisionText(uint16_t revision) {
    return revision == 0 ? std::string(kNoBoardRevision)
                         : std::string(1, static_cast<char>(static_cast<uint8_t>('A' - 1 + revision)));
}

std::optional<uint8_t> parseBoardRevision(std::string_view text) {
    if (text == kNoBoardRevision) {
        return uint8_t{0};
    }
    if (text.size() == 1 && text[0] >= 'A' && text[0] <= 'Z') {
        return static_cast<uint8_t>(boardRevisionOfLetter(text[0]));
    }
    return std::nullopt;
}

}  // namespace catalogue
