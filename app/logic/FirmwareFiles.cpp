#include "app/logic/FirmwareFiles.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdio>
#include <cstring>

#include "catalogue/BoardRevision.h"
#include "catalogue/CardModels.h"
#include "catalogue/FirmwareVersion.h"
#include "catalogue/ImageName.h"

char gszResourcePaths[kMaxFirmwareFiles][kResourcePathBytes];
char gszResourceNames[kMaxFirmwareFiles][kResourceNameBytes];
int32_t gNumXSVFiles = 0;
int32_t gNewFirmware = kNoFirmware;
uint16_t gusNewFirmwareRev = 0;

int32_t GetXSVFilesInBundle(char (*paths)[kResourcePathBytes], int32_t max,
                            const std::function<bool(const std::string& path)>& mayBeOffered) {
    const CFBundleRef bundle = CFBundleGetMainBundle();
    if (bundle == nullptr) {
        std::fputs("Could not get main bundle\n", stderr);
        return 0;
    }
    const CFArrayRef urls = CFBundleCopyResourceURLsOfType(bundle, CFSTR("xsv"), nullptr);
    if (urls == nullptr) {
        return 0;
    }
    int32_t filled = 0;
    for (CFIndex i = 0; i < CFArrayGetCount(urls) && filled < max; ++i) {
        const auto url = static_cast<CFURLRef>(CFArrayGetValueAtIndex(urls, i));
        auto* const path = reinterpret_cast<uint8_t*>(paths[filled]);
        if (url != nullptr && CFURLGetFileSystemRepresentation(url, 1, path, kResourcePathBytes) != 0 &&
            (!mayBeOffered || mayBeOffered(paths[filled]))) {
            ++filled;
        }
    }
    CFRelease(urls);
    return filled;
}

void CatalogueFirmwareFiles(const std::function<bool(const std::string& path)>& mayBeOffered) {
    gNumXSVFiles = GetXSVFilesInBundle(gszResourcePaths, kMaxFirmwareFiles, mayBeOffered);
    for (int32_t i = 0; i < gNumXSVFiles; ++i) {
        std::memset(gszResourceNames[i], 0, kResourceNameBytes);
        if (const char* const slash = std::strrchr(gszResourcePaths[i], '/')) {
            std::strncpy(gszResourceNames[i], slash + 1, kResourceNameBytes - 1);
        }
    }
}

void ChooseFirmware(uint16_t modelCode, uint16_t boardRevision) {
    gusNewFirmwareRev = kNoVersion;
    gNewFirmware = kNoFirmware;
    for (int32_t i = 0; i < gNumXSVFiles; ++i) {
        const catalogue::ImageName name = catalogue::readImageName(gszResourceNames[i]);
        if (name.modelCode == modelCode && name.boardRevision == boardRevision) {
            gNewFirmware = i;
            gusNewFirmwareRev = name.version;
            return;
        }
    }
}

namespace {

std::string overviewOf(const char* fileName) {
    const catalogue::ImageName name = catalogue::readImageName(fileName);
    if (!catalogue::isModelCode(name.modelCode) || name.boardRevision > catalogue::kHighestBoardRevision) {
        return fileName;
    }
    const std::string board =
        name.boardRevision == 0 ? "" : ", board " + catalogue::boardRevisionText(name.boardRevision);
    return catalogue::modelName(name.modelCode) + board + ": " +
           catalogue::firmwareVersionText(name.flavour, name.version) + " (" + fileName + ")";
}

}  // namespace

std::string FirmwareOverview() {
    std::string lines;
    for (int32_t i = 0; i < gNumXSVFiles; ++i) {
        lines += i == 0 ? "" : "\n";
        lines += overviewOf(gszResourceNames[i]);
    }
    return lines;
}

char ByteOrderLetter(uint8_t byteSwap) {
    return byteSwap != 0 ? 'W' : 'M';
}

char FirmwareByteOrderLetter(const char* name) {
    return catalogue::readImageName(name).flavour;
}

bool IsFirmwareCurrent(char cardLetter, uint8_t cardVersion, char fileLetter, uint16_t fileVersion) {
    return fileLetter == cardLetter && cardVersion >= fileVersion;
}
