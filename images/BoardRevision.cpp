#include "images/BoardRevision.h"

namespace images {
namespace {

constexpr std::string_view kWithoutRevision = "NC";
constexpr uint8_t kHighestRevision = 26;  // Z

}  // namespace

std::optional<uint8_t> boardRevisionNamed(std::string_view text) {
    if (text == kWithoutRevision) {
        return uint8_t{0};
    }
    if (text.size() == 1 && text[0] >= 'A' && text[0] <= 'Z') {
        return static_cast<uint8_t>(text[0] - 'A' + 1);
    }
    return std::nullopt;
}

std::optional<std::string> boardRevisionName(uint8_t revision) {
    if (revision == 0) {
        return std::string(kWithoutRevision);
    }
    return revision <= kHighestRevision ? std::optional(std::string(1, static_cast<char>('A' + revision - 1)))
                                        : std::nullopt;
}

}  // namespace images
