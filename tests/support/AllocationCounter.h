#pragma once

// Counts what this program asks operator new for. One file of a test program includes it.

#include <cstddef>
#include <cstdlib>
#include <new>

inline std::size_t allocations = 0;

void* operator new(std::size_t bytes) {
    ++allocations;
    if (void* const memory = std::malloc(bytes)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
    std::free(memory);
}
