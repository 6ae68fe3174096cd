#pragma once

// Which instructions of a guest's program for x86-64 reach nothing but the program's own stack and static
// data. A card is never there: the kernel maps its registers at an address of their own, to which the program
// has a pointer.

#include <cstdint>
#include <span>

namespace simulator {

// Whether an instruction accesses memory, if at all, on the stack by pushing, popping, calling or returning,
// or at a fixed distance from the stack pointer or the instruction pointer. False if in doubt: many such
// instructions are not known here.
bool accessesOnlyOwnMemory(std::span<const uint8_t> instruction);

}  // namespace simulator
