#pragma once

// One load or store of a word of a mapped range: exactly one access of 32 bits, in program order.
//
// On x86-64 the instruction is spelled out, because a compiler may merge a volatile access into an arithmetic
// instruction. Other processors have volatile accesses, which are enough for the tests there; whether a bus
// of theirs keeps the accesses in order has not been tried.

#include <bit>
#include <cstdint>

namespace host::mapped {

// A word with the byte at its lowest address as the most significant one, from memory or to it.
inline uint32_t inMemoryOrder(uint32_t word) {
    return std::endian::native == std::endian::little ? __builtin_bswap32(word) : word;
}

inline uint32_t load(const uint32_t* address) {
#ifdef __x86_64__
    uint32_t word = 0;
    asm volatile("movl (%1), %0" : "=r"(word) : "r"(address) : "memory");
#else
    const uint32_t word = *static_cast<const volatile uint32_t*>(address);
#endif
    return inMemoryOrder(word);
}

inline void store(uint32_t* address, uint32_t word) {
#ifdef __x86_64__
    asm volatile("movl %1, (%0)" : : "r"(address), "r"(inMemoryOrder(word)) : "memory");
#else
    *static_cast<volatile uint32_t*>(address) = inMemoryOrder(word);
#endif
}

}  // namespace host::mapped
