#include "images/ImageName.h"

#include <algorithm>

#include "images/BoardRevision.h"

namespace images {

namespace {

constexpr std::string_view kEnding = ".xsv";

}  // namespace

std::string imageFileName(const CardModel& model, char flavour, uint8_t version, uint8_t boardRevision) {
    std::string name(model.tag);
    name += flavour;
    name += static_cast<char>('0' + version / 10);
    name += static_cast<char>('0' + version % 10);
    name += boardRevisionName(boardRevision).value();
    return name.append(kEnding);
}

bool isImageFileName(std::string_view name) {
    constexpr std::size_t kBoardAt = 6;
    if (name.size() <= kBoardAt + kEnding.size() || !name.ends_with(kEnding)) {
        return false;
    }
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::string_view board = name.substr(kBoardAt, name.size() - kEnding.size() - kBoardAt);
    return std::ranges::any_of(kCardModels,
                               [name](const CardModel& model) { return name.starts_with(model.tag); }) &&
           (name[3] == 'M' || name[3] == 'W') && isDigit(name[4]) && isDigit(name[5]) &&
           boardRevisionNamed(board).has_value();
}

}  // namespace images
