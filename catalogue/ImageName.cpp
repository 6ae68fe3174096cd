#include "catalogue/ImageName.h"

#include <algorithm>

#include "catalogue/BoardRevision.h"
#include "catalogue/CardModels.h"
#include "catalogue/FirmwareVersion.h"
#include "catalogue/Numbers.h"

namespace catalogue {
namespace {

constexpr std::size_t kFlavourPosition = 3;
constexpr std::size_t kVersionPosition = 4;
constexpr std::size_t kVersionDigits = 2;
constexpr std::size_t kBoardPosition = 6;
constexpr std::string_view kEnding = ".xsv";

// NUL beyond the end of the name.
constexpr char characterAt(std::string_view name, std::size_t position) {
    return position < name.size() ? name[position] : '\0';
}

constexpr std::string_view from(std::string_view name, std::size_t position) {
    return name.substr(std::min(position, name.size()));
}

// Character arithmetic rather than a search for tags: that is what decides which images a card accepts.
constexpr uint16_t modelCodeOfTag(std::string_view name) {
    int code = static_cast<unsigned char>(characterAt(name, 2)) - kVariantLetterAboveCode;
    if (characterAt(name, 2) == '0') {
        code = modelByName("Vorn K40")->code;
    }
    if (characterAt(name, 0) == 'D') {
        if (characterAt(name, 1) == 'X') {
            code = modelByName("Vorn DX8")->code;
        } else if (characterAt(name, 1) == 'S') {
            code = modelByName("Vorn DX8-XS")->code;
        }
    }
    return static_cast<uint16_t>(code);
}

static_assert(std::ranges::all_of(kCardModels, [](const CardModel& model) {
    return modelCodeOfTag(model.tag) == model.code;
}));

}  // namespace

ImageName readImageName(std::string_view name) {
    const std::string_view board = from(name, kBoardPosition);
    return {.modelCode = modelCodeOfTag(name),
            .flavour = characterAt(name, kFlavourPosition) == 'M' ? 'M' : 'W',
            .version = static_cast<uint16_t>(leadingNumber(from(name, kVersionPosition))),
            .boardRevision = board.starts_with(kNoBoardRevision)
                                 ? uint16_t{0}
                                 : boardRevisionOfLetter(characterAt(board, 0))};
}

std::optional<std::string> imageFileName(const ImageName& name) {
    const CardModel* const model = modelByCode(name.modelCode);
    if (model == nullptr || !isFlavour(name.flavour) || name.version > kHighestVersion ||
        name.boardRevision > kHighestBoardRevision) {
        return std::nullopt;
    }
    return std::string(model->tag) + name.flavour + paddedNumber(name.version, kVersionDigits) +
           boardRevisionText(name.boardRevision) + std::string(kEnding);
}

bool isImageFileName(std::string_view name) {
    return imageFileName(readImageName(name)) == name;
}

}  // namespace catalogue
