#pragma once

// Splits an image into its commands as the player does.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "images/Command.h"

namespace images {

// Why there is no further command.
enum class ImageEnd : uint8_t {
    complete,        // the last command was XCOMPLETE
    missing,         // the image ends without XCOMPLETE
    cutOff,          // the image ends within a command
    unknownCommand,  // the player does not have this opcode
};

// The image must outlive the reader and its commands. A copy continues independently.
class CommandReader {
  public:
    explicit CommandReader(std::span<const uint8_t> image) : image_(image) {}

    // The next command, or nothing at the end.
    [[nodiscard]] std::optional<Command> next();

    // Reads on in other memory, which begins with what was rest().
    void continueIn(std::span<const uint8_t> image);

    // Where the next command begins, or what follows the last.
    std::size_t offset() const { return offset_; }
    std::span<const uint8_t> rest() const { return image_.subspan(offset_); }
    // Why next() returned nothing.
    ImageEnd end() const;

  private:
    std::span<const uint8_t> image_;
    std::size_t offset_ = 0;
    ValueSizes sizes_;
    bool isComplete_ = false;
};

}  // namespace images
