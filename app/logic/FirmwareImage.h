#pragma once

// A firmware image in memory, as the update run plays it.

#include <cstdint>
#include <memory>
#include <optional>

// The byte of the guard after an image. No command has this code. As an operand it does the least harm: the
// state that it names can be reached, neither device on the chain acts on the instruction that it forms, and
// its low bit expects what a bypass register captures.
constexpr uint8_t kGuardByte = 0xFC;

// The most bytes that the operands of one command can have: two values whose negative 16-bit length counts as
// 65535 bytes, or one such value and 255 increments of 255 bytes.
constexpr uint32_t kGuardBytes = 2 * 0x10000;

struct FirmwareImage {
    // The file's bytes, followed by a guard: see LoadFirmwareImage.
    std::unique_ptr<uint8_t[]> bytes;
    uint32_t size = 0;
};

// Why an image could not be loaded, in the words of the alert that reports it.
struct FirmwareImageError {
    const char* title;
    const char* message;
};

// Reads a whole image file. Returns the image; or nothing, and fills in the error.
//
// The player stops at the image's completion command and never looks at its length. So a guard of unsupported
// commands, longer than the operands of any one command, follows the bytes: in a truncated image the player
// stops there with an error instead of reading beyond the image's memory.
[[nodiscard]] std::optional<FirmwareImage> LoadFirmwareImage(const char* path, FirmwareImageError& outError);
