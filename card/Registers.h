#pragma once

// The open card's register window: 32-bit registers at byte offsets, reached only through two functions. The
// simulated card has its own list of them, on purpose: a mistake in a shared one would pass every test.

#include <cstdint>

#include "platform/Host.h"

// Byte offsets of the registers, from the base of the card's memory range 0.
constexpr uint32_t kByteSwapIDRegister = 0x000;
constexpr uint32_t kDeviceIDRegister = 0x008;
constexpr uint32_t kBoardRevisionRegister = 0x00C;
constexpr uint32_t kFirmwareVersionRegister = 0x010;
constexpr uint32_t kFirmwareDateRegister = 0x014;
constexpr uint32_t kReservedRegister = 0x018;
constexpr uint32_t kJtagOutputRegister = 0x100;
constexpr uint32_t kJtagInputRegister = 0x108;

// What the low 16 bits of the byte-swap identification register read in the right byte order.
constexpr uint16_t kByteSwapID = 0x564F;

// Non-zero if the card presents its registers least significant byte first (firmware flavour W), so that
// every value is reversed when read and written. If 0 (flavour M), the most significant byte comes first and
// nothing is reversed.
inline uint8_t gbSwap = 0;

// Base of the open card's register window; null when no card is open.
inline uint32_t* gpRegisters = nullptr;

// The address of a register in the open card's window, from its byte offset. A card must be open.
inline uint32_t* RegisterAt(uint32_t offsetBytes) {
    return gpRegisters + offsetBytes / sizeof(uint32_t);
}

// A word in the order given by gbSwap.
inline uint32_t InCardOrder(uint32_t word) {
    return gbSwap != 0 ? __builtin_bswap32(word) : word;
}

// Reads or writes one register in the byte order given by gbSwap. Inline, because every access passes here.
inline uint32_t MacReadULONG(uint32_t* reg) {
    return InCardOrder(InstalledHost().loadWord(reg));
}
inline void MacWriteULONG(uint32_t* reg, uint32_t value) {
    InstalledHost().storeWord(reg, InCardOrder(value));
}
