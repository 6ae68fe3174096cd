#include "simulator/guest/plugin/OwnMemory.h"

#include <cstddef>

namespace simulator {
namespace {

constexpr uint8_t kReturn = 0xC3;
constexpr uint8_t kCall = 0xE8;

constexpr bool isRexPrefix(uint8_t byte) {
    return (byte & 0xF0) == 0x40;
}

// The prefix's bits that continue the numbers of an address's base and index registers.
constexpr uint8_t kOtherBaseOrIndex = 0x03;

constexpr bool pushesOrPopsRegister(uint8_t opcode) {
    return (opcode & 0xF0) == 0x50;
}

// Whether a byte follows that names the operands, one of which may be in memory: arithmetic, and moves of
// whole words and bytes, and what is done with an operand that is a pointer.
constexpr bool namesOperands(uint8_t opcode) {
    const bool isArithmetic = opcode < 0x40 && (opcode & 0x04) == 0;
    const bool isImmediateArithmetic = opcode >= 0x80 && opcode <= 0x83;
    const bool isTestExchangeOrMove = opcode >= 0x84 && opcode <= 0x8B;
    const bool isImmediateMove = opcode == 0xC6 || opcode == 0xC7;
    return isArithmetic || isImmediateArithmetic || isTestExchangeOrMove || isImmediateMove || opcode == 0xFF;
}

}  // namespace

bool accessesOnlyOwnMemory(std::span<const uint8_t> instruction) {
    const auto byteAt = [instruction](std::size_t index) {
        return index < instruction.size() ? instruction[index] : uint8_t{0};
    };
    const bool hasPrefix = isRexPrefix(byteAt(0));
    const uint8_t prefix = hasPrefix ? byteAt(0) : uint8_t{0};
    const std::size_t start = hasPrefix ? 1 : 0;
    const uint8_t opcode = byteAt(start);
    if (pushesOrPopsRegister(opcode) || opcode == kReturn || opcode == kCall) {
        return true;
    }
    if (!namesOperands(opcode)) {
        return false;
    }
    const uint8_t operands = byteAt(start + 1);
    const bool isFromInstructionPointer = (operands & 0xC7) == 0x05;
    const bool hasAddressByte = (operands & 0xC0) != 0xC0 && (operands & 0x07) == 0x04;
    const bool isStackPointerAlone = (byteAt(start + 2) & 0x3F) == 0x24 && (prefix & kOtherBaseOrIndex) == 0;
    return isFromInstructionPointer || (hasAddressByte && isStackPointerAlone);
}

}  // namespace simulator
