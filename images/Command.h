#pragma once

// One command of an image and its operands.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "images/CommandForms.h"

namespace images {

// The spans point into the image. Values are most significant byte first.
struct Command {
    const CommandForm* form = nullptr;
    std::size_t bytes = 0;           // with the opcode
    uint32_t number = 0;             // the number, count or code; the length in bits of an instruction
    std::span<const uint8_t> first;  // the instruction, or the first data register value
    // The second data register value; or all step values, of which `number` is the count.
    std::span<const uint8_t> second;

    XsvfOpcode opcode() const { return form->opcode; }
};

// The number of bytes that a value of this many bits has in an image. The player keeps it in 16 bits, so a
// very large number of bits gives a small one.
std::size_t valueBytes(uint32_t bits);

// The lengths in bytes of the data register values and step values of the following commands.
struct ValueSizes {
    std::size_t data = 0;  // from the last XSDRSIZE
    std::size_t step = 0;  // one bit for each 1 in the data mask of the last XSETSDRMASKS

    void take(const Command& command);
    bool operator==(const ValueSizes&) const = default;
};

// The command at the beginning of the bytes, whose opcode has this form; nothing if the bytes end within it.
[[nodiscard]] std::optional<Command> readCommand(const CommandForm& form, std::span<const uint8_t> bytes,
                                                 const ValueSizes& sizes);

}  // namespace images
