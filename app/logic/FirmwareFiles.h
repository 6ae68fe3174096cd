#pragma once

// The firmware images in the bundle, known only by their names (catalogue/ImageName.h).

#include <cstdint>
#include <functional>
#include <string>

constexpr int kMaxFirmwareFiles = 16;
constexpr int kResourcePathBytes = 256;
constexpr int kResourceNameBytes = 14;

// Full paths and file names of the images, NUL-terminated, and how many there are.
extern char gszResourcePaths[kMaxFirmwareFiles][kResourcePathBytes];
extern char gszResourceNames[kMaxFirmwareFiles][kResourceNameBytes];
extern int32_t gNumXSVFiles;

// The image chosen for the open card: its index in the tables above, and its version.
constexpr int32_t kNoFirmware = -1;
constexpr uint16_t kNoVersion = 0xFFFF;
extern int32_t gNewFirmware;
extern uint16_t gusNewFirmwareRev;

// Fills at most max paths from the bundle, in the bundle's order, and returns how many. A path that does not
// fit is skipped, and so is one for which the function, if there is one, returns false; they do not count
// towards max. Without a bundle there are no paths, and a line on standard error says so.
int32_t GetXSVFilesInBundle(char (*paths)[kResourcePathBytes], int32_t max,
                            const std::function<bool(const std::string& path)>& mayBeOffered = {});

// Fills both tables and the count. A file name too long for its entry is cut to fit.
void CatalogueFirmwareFiles(const std::function<bool(const std::string& path)>& mayBeOffered = {});

// Sets gNewFirmware and gusNewFirmwareRev to the first image in the tables for a model and board revision,
// whatever its version and byte order; to kNoFirmware and kNoVersion if there is none.
void ChooseFirmware(uint16_t modelCode, uint16_t boardRevision);

// The images in the tables, one line each: "VornMX-B, board A: M12 (VMBM12A.xsv)"; only the name if it stands
// for no known model and board.
std::string FirmwareOverview();

// 'W' for a card whose registers need a byte swap, 'M' for one whose registers do not. This is also the
// flavour of the card's firmware.
char ByteOrderLetter(uint8_t byteSwap);

// The flavour of an image, 'M' or 'W'.
char FirmwareByteOrderLetter(const char* name);

// A card is up to date if the image has the card's byte order and is not newer than what the card runs.
bool IsFirmwareCurrent(char cardLetter, uint8_t cardVersion, char fileLetter, uint16_t fileVersion);
