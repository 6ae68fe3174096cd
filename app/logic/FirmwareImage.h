#pragma once

// A firmware image in memory, as the update run plays it.

#include <cstdint>
#include <memory>
#include <optional>

// The guard after an image. No command has this code. As an operand it does the least harm: the state it
// names can be moved to, the instruction that it spells is one that neither device on the chain acts on, and
// its low bit expects what a bypass register captures.
constexpr uint8_t kGuardByte = 0xFC;

// The longest a single command's operands can get: two values whose negative 16-bit length counts as 65535
// bytes, or one such value and 255 increments of 255 bytes.
constexpr uint32_t kGuardBytes = 2 * 0x10000;

struct FirmwareImage {
    // The file's bytes, followed by a guard: see LoadFirmwareImage.
    std::unique_ptr<uint8_t[]> bytes;
    uint32_t size = 0;
};

// What kept an image from being loaded, in the words of the alert that reports it.
struct FirmwareImageError {
    const char* title;
    const char* message;
};

// Reads a whole image file. Returns the image, or nothing with the error filled.
//
// The player ends by the image's own completion command and never looks at its length, so the bytes are
// followed by a guard of unsupported commands, longer than the operands of any one command: a truncated image
// ends there in an error instead of running into foreign memory.
std::optional<FirmwareImage> LoadFirmwareImage(const char* path, FirmwareImageError& outError);
