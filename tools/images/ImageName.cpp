#include "tools/images/ImageName.h"

#include <algorithm>

#include "tools/images/BoardRevision.h"

namespace tools {

namespace {

constexpr std::string_view kEnding = ".xsv";
constexpr uint8_t kHighestVersion = 99;

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

std::optional<std::string> imageFileNameFor(const simulator::FpgaConfiguration& content) {
    const CardModel* const model = modelCoded(content.modelCode);
    if (model == nullptr || content.version > kHighestVersion || !boardRevisionName(content.boardRevision)) {
        return std::nullopt;
    }
    return imageFileName(*model, content.flavour, content.version, content.boardRevision);
}

}  // namespace tools
