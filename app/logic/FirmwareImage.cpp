#include "app/logic/FirmwareImage.h"

#include <cstdio>
#include <cstring>
#include <new>

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace

std::optional<FirmwareImage> LoadFirmwareImage(const char* path, FirmwareImageError& outError) {
    const auto fail = [&outError](const char* title, const char* message) {
        outError = {title, message};
        return std::nullopt;
    };
    const File file(std::fopen(path, "r"));
    if (!file) {
        return fail("Error", "Could not open the firmware file.");
    }
    if (std::fseek(file.get(), 0, SEEK_END) != 0) {
        return fail("Error", "Could not determine the size of the firmware file.");
    }
    const long position = std::ftell(file.get());
    std::fseek(file.get(), 0, SEEK_SET);
    if (position == 0) {
        return fail("Error", "Unable to get Firmware file size!");
    }
    FirmwareImage image;
    const auto fileBytes = static_cast<std::size_t>(position);
    if (fileBytes <= UINT32_MAX - kGuardBytes) {
        image.bytes.reset(new (std::nothrow) uint8_t[fileBytes + kGuardBytes]);
    }
    if (!image.bytes) {
        return fail("Out of Memory", "Unable to allocate enough RAM to load the Firmware!");
    }
    image.size = static_cast<uint32_t>(fileBytes);
    if (std::fread(image.bytes.get(), 1, fileBytes, file.get()) != fileBytes) {
        return fail("Error", "Unable to read the firmware file!");
    }
    std::memset(image.bytes.get() + fileBytes, kGuardByte, kGuardBytes);
    return image;
}
