#include "tools/images/ImageName.h"

#include <algorithm>

namespace tools {

namespace {

constexpr std::string_view boardWithoutRevision = "NC";
constexpr std::string_view kEnding = ".xsv";
constexpr uint8_t kHighestVersion = 99;
constexpr uint8_t kHighestRevision = 26;  // Z

}  // namespace

std::optional<uint8_t> boardRevisionNamed(std::string_view board) {
    if (board == boardWithoutRevision) {
        return uint8_t{0};
    }
    if (board.size() == 1 && board[0] >= 'A' && board[0] <= 'Z') {
        return static_cast<uint8_t>(board[0] - 'A' + 1);
    }
    return std::nullopt;
}

std::string imageFileName(const CardModel& model, char flavour, uint8_t version, uint8_t boardRevision) {
    std::string name(model.tag);
    name += flavour;
    name += static_cast<char>('0' + version / 10);
    name += static_cast<char>('0' + version % 10);
    if (boardRevision == 0) {
        name += boardWithoutRevision;
    } else {
        name += static_cast<char>('A' + boardRevision - 1);
    }
    return name.append(kEnding);
}

bool isImageFileName(std::string_view name) {
    constexpr std::size_t boardAt = 6;
    if (name.size() <= boardAt + kEnding.size() || !name.ends_with(kEnding)) {
        return false;
    }
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::string_view board = name.substr(boardAt, name.size() - kEnding.size() - boardAt);
    return std::ranges::any_of(kCardModels,
                               [name](const CardModel& model) { return name.starts_with(model.tag); }) &&
           (name[3] == 'M' || name[3] == 'W') && isDigit(name[4]) && isDigit(name[5]) &&
           boardRevisionNamed(board).has_value();
}

std::optional<std::string> imageFileNameFor(const simulator::FpgaConfiguration& content) {
    const CardModel* const model = modelCoded(content.modelCode);
    if (model == nullptr || content.version > kHighestVersion || content.boardRevision > kHighestRevision) {
        return std::nullopt;
    }
    return imageFileName(*model, content.flavour, content.version, content.boardRevision);
}

}  // namespace tools
