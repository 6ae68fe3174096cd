#pragma once

// The names of the commands in an image, and the operands of each.

#include <cstdint>
#include <string_view>

#include "xsvf/Format.h"

namespace images {

enum class Operands : uint8_t {
    none,
    byte,         // a count
    number,       // four bytes, most significant first
    state,        // a byte: the code of a TAP state
    endState,     // a byte: 0 for Run-Test/Idle, 1 for the register's Pause state
    instruction,  // a byte with a length in bits, and a value of that length in whole bytes
    value,        // a data register value
    twoValues,    // two data register values
    steps,        // a data register value, a byte with a count, and that many step values
};

struct CommandForm {
    XsvfOpcode opcode;
    std::string_view name;
    Operands operands;
};

// The form of an opcode or a name, or null if the player does not have such a command.
const CommandForm* formOf(uint8_t opcode);
const CommandForm* formNamed(std::string_view name);

}  // namespace images
