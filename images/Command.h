#pragma once

// One command of an image, taken apart.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "images/CommandForms.h"

namespace images {

// The spans lie in the image. Values are most significant byte first.
struct Command {
    const CommandForm* form = nullptr;
    std::size_t bytes = 0;           // with the opcode
    uint32_t number = 0;             // the number, count or code; the length in bits of an instruction
    std::span<const uint8_t> first;  // the instruction, or the first data register value
    // The second data register value; the step values, one after the other, where `number` is their count.
    std::span<const uint8_t> second;

    [[nodiscard]] XsvfOpcode opcode() const { return form->opcode; }
};

// Bytes that a value of so many bits occupies in an image. The player keeps the count in 16 bits, so a size
// far beyond its limit comes round and means a short value.
[[nodiscard]] std::size_t valueBytes(uint32_t bits);

// How long the data register values and step values of the commands to come are, in bytes.
struct ValueSizes {
    std::size_t data = 0;  // as the last XSDRSIZE says
    std::size_t step = 0;  // for the bits that are 1 in the last XSETSDRMASKS' data mask

    void take(const Command& command);
    bool operator==(const ValueSizes&) const = default;
};

// The command that begins with an opcode of that form. Nothing when the bytes end before it does.
[[nodiscard]] std::optional<Command> readCommand(const CommandForm& form, std::span<const uint8_t> bytes,
                                                 const ValueSizes& sizes);

}  // namespace images
