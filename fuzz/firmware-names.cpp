// The names of firmware images: the choice for a card among any names, and the names that the image tool
// makes. The input is a list of names separated by slashes.

#include <algorithm>
#include <cstring>
#include <string>

#include "app/logic/FirmwareFiles.h"
#include "catalogue/CardModels.h"
#include "catalogue/ImageName.h"
#include "fuzz/Require.h"

namespace {

void enter(int32_t index, std::string_view name) {
    std::memset(gszResourceNames[index], 0, kResourceNameBytes);
    std::memcpy(gszResourceNames[index], name.data(),
                std::min<std::size_t>(name.size(), kResourceNameBytes - 1));
}

void checkChoice(uint16_t model, uint16_t board) {
    ChooseFirmware(model, board);
    if (gNewFirmware == kNoFirmware) {
        require(gusNewFirmwareRev == kNoVersion, "no image has no version");
        return;
    }
    require(gNewFirmware >= 0 && gNewFirmware < gNumXSVFiles, "the chosen image is in the table");
    const char* const name = gszResourceNames[gNewFirmware];
    require(catalogue::readImageName(name).modelCode == model, "the chosen image is for the card's model");
    const char letter = FirmwareByteOrderLetter(name);
    require(letter == 'M' || letter == 'W', "the chosen image has one of two byte orders");
    if (gusNewFirmwareRev <= 0xFF) {
        const auto version = static_cast<uint8_t>(gusNewFirmwareRev);
        require(IsFirmwareCurrent(letter, version, letter, gusNewFirmwareRev),
                "a card with the chosen image is up to date");
        const char other = letter == 'M' ? 'W' : 'M';
        require(!IsFirmwareCurrent(other, version, letter, gusNewFirmwareRev),
                "a card of the other byte order is not");
    }
}

void checkAnyNames(std::string_view names) {
    gNumXSVFiles = 0;
    while (gNumXSVFiles < kMaxFirmwareFiles) {
        const std::size_t end = names.find('/');
        enter(gNumXSVFiles++, names.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        names.remove_prefix(end + 1);
    }
    for (const catalogue::CardModel& model : catalogue::kCardModels) {
        for (uint16_t board = 0; board <= 26; ++board) {
            checkChoice(model.code, board);
        }
    }
}

void checkMadeName(const uint8_t* data) {
    const catalogue::CardModel& model = catalogue::kCardModels[data[0] % catalogue::kCardModels.size()];
    const char letter = (data[1] & 1) != 0 ? 'M' : 'W';
    const auto version = static_cast<uint8_t>(data[2] % 100);
    const auto board = static_cast<uint8_t>(data[3] % 27);
    const std::string name =
        catalogue::imageFileName(
            {.modelCode = model.code, .flavour = letter, .version = version, .boardRevision = board})
            .value();
    require(catalogue::isImageFileName(name), "the tool makes valid image names");
    require(name.size() < kResourceNameBytes, "an image name fits the table");
    gNumXSVFiles = 1;
    enter(0, name);
    ChooseFirmware(model.code, board);
    require(gNewFirmware == 0, "an image is chosen for its card");
    require(gusNewFirmwareRev == version, "the name gives the image's version");
    require(FirmwareByteOrderLetter(gszResourceNames[0]) == letter, "the name gives the image's byte order");
    ChooseFirmware(model.code, static_cast<uint16_t>(board + 1));
    require(gNewFirmware == kNoFirmware, "an image is not chosen for another board");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    checkAnyNames({reinterpret_cast<const char*>(data), size});
    if (size >= 4) {
        checkMadeName(data);
    }
    return 0;
}
