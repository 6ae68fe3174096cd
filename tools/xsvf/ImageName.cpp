#include "tools/xsvf/ImageName.h"

#include <algorithm>
#include <array>

namespace tools {

namespace {

constexpr std::array<CardModel, 6> models = {{
    {"VornMX-A", "VMA", 0x20},
    {"VornMX-B", "VMB", 0x21},
    {"VornMX-C", "VMC", 0x22},
    {"K40", "K40", 0x23},
    {"DX8", "DX8", 0x24},
    {"DX8-XS", "DSX", 0x25},
}};

constexpr std::string_view boardWithoutRevision = "NC";

}  // namespace

std::span<const CardModel> cardModels() {
    return models;
}

const CardModel* modelNamed(std::string_view name) {
    const auto* found = std::find_if(models.begin(), models.end(),
                                     [=](const CardModel& model) { return model.name == name; });
    return found != models.end() ? found : nullptr;
}

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
    return name + ".xsv";
}

}  // namespace tools
