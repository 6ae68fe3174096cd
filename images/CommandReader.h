#pragma once

// Takes an image apart, command by command, as the player reads it.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "images/Command.h"

namespace images {

// What stands where the reader found no further command.
enum class ImageEnd : uint8_t {
    complete,        // whatever follows XCOMPLETE, perhaps nothing
    missing,         // nothing, though XCOMPLETE has not come
    cutOff,          // a command that the image's end cuts off
    unknownCommand,  // an opcode that the player does not have
};

// The image must outlive the reader and its commands. A copy goes on independently.
class CommandReader {
  public:
    explicit CommandReader(std::span<const uint8_t> image) : image_(image) {}

    // The next command; nothing, now and from then on, when there is none.
    [[nodiscard]] std::optional<Command> next();

    // Where the next command, or whatever stands in its place, begins.
    [[nodiscard]] std::size_t offset() const { return offset_; }
    [[nodiscard]] std::span<const uint8_t> rest() const { return image_.subspan(offset_); }
    // Why next() returned nothing.
    [[nodiscard]] ImageEnd end() const;

  private:
    std::span<const uint8_t> image_;
    std::size_t offset_ = 0;
    ValueSizes sizes_;
    bool isComplete_ = false;
};

}  // namespace images
