#include "app/logic/FirmwareFiles.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdio>
#include <cstring>

#include "app/logic/CardModel.h"
#include "app/logic/CardTexts.h"
#include "app/logic/FormatText.h"

char gszResourcePaths[kMaxFirmwareFiles][kResourcePathBytes];
char gszResourceNames[kMaxFirmwareFiles][kResourceNameBytes];
int32_t gNumXSVFiles = 0;
int32_t gNewFirmware = kNoFirmware;
uint16_t gusNewFirmwareRev = 0;

namespace {

constexpr int kByteOrderPosition = 3;
constexpr int kVersionPosition = 4;
constexpr int kBoardPosition = 6;

uint16_t boardRevisionOf(const char* name) {
    const char* const board = name + kBoardPosition;
    if (board[0] == 'N' && board[1] == 'C') {
        return 0;
    }
    constexpr int kBeforeLetterA = 'A' - 1;
    return static_cast<uint16_t>(static_cast<unsigned char>(board[0]) - kBeforeLetterA);
}

uint16_t versionOf(const char* name) {
    uint32_t version = 0;
    for (const char* digit = name + kVersionPosition; *digit >= '0' && *digit <= '9'; ++digit) {
        version = version * 10 + static_cast<uint32_t>(*digit - '0');
    }
    return static_cast<uint16_t>(version);
}

}  // namespace

int32_t GetXSVFilesInBundle(char (*paths)[kResourcePathBytes], int32_t max) {
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
        if (url != nullptr && CFURLGetFileSystemRepresentation(url, 1, path, kResourcePathBytes) != 0) {
            ++filled;
        }
    }
    CFRelease(urls);
    return filled;
}

void CatalogueFirmwareFiles() {
    gNumXSVFiles = GetXSVFilesInBundle(gszResourcePaths, kMaxFirmwareFiles);
    for (int32_t i = 0; i < gNumXSVFiles; ++i) {
        std::memset(gszResourceNames[i], 0, kResourceNameBytes);
        if (const char* const slash = std::strrchr(gszResourcePaths[i], '/')) {
            std::strncpy(gszResourceNames[i], slash + 1, kResourceNameBytes - 1);
        }
    }
}

// Character arithmetic rather than a table of tags: that is what decides which tags a card accepts, VMD for a
// Vorn K40 included.
int FirmwareModelCode(const char* name) {
    constexpr int kCodeBelowLetter = 0x21;
    int code = static_cast<unsigned char>(name[2]) - kCodeBelowLetter;
    if (code == '0' - kCodeBelowLetter) {
        code = kVornK40;
    }
    if (name[0] == 'D') {
        if (name[1] == 'X') {
            code = kVornDX8;
        } else if (name[1] == 'S') {
            code = kVornDX8XS;
        }
    }
    return code;
}

void ChooseFirmware(uint16_t modelCode, uint16_t boardRevision) {
    gusNewFirmwareRev = kNoVersion;
    gNewFirmware = kNoFirmware;
    for (int32_t i = 0; i < gNumXSVFiles; ++i) {
        const char* const name = gszResourceNames[i];
        if (FirmwareModelCode(name) == modelCode && boardRevisionOf(name) == boardRevision) {
            gNewFirmware = i;
            gusNewFirmwareRev = versionOf(name);
            return;
        }
    }
}

namespace {

std::string overviewOf(const char* name) {
    constexpr uint16_t kLetters = 26;
    const int model = FirmwareModelCode(name);
    const uint16_t board = boardRevisionOf(name);
    if (model < 0 || !IsModelCode(static_cast<uint32_t>(model)) || board > kLetters) {
        return name;
    }
    const std::string boards =
        board == 0 ? std::string() : FormatText(", board %s", BoardRevisionText(board).c_str());
    const std::string version = FirmwareVersionText(FirmwareByteOrderLetter(name), versionOf(name));
    return FormatText("%s%s: %s (%s)", ModelName(static_cast<uint16_t>(model)).c_str(), boards.c_str(),
                      version.c_str(), name);
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

char FirmwareByteOrderLetter(const char* name) {
    return name[kByteOrderPosition] == 'M' ? 'M' : 'W';
}

bool IsFirmwareCurrent(char cardLetter, uint8_t cardVersion, char fileLetter, uint16_t fileVersion) {
    return fileLetter == cardLetter && cardVersion >= fileVersion;
}
