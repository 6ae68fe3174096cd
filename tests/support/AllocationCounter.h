#pragma once

// Counts what this program asks the heap for, through malloc and its relatives or through operator new. One
// file of a test program includes it.

#include <cstddef>
#include <cstdlib>
#include <new>

inline std::size_t allocations = 0;

#if defined(__has_feature)
#define IS_SANITIZED __has_feature(address_sanitizer)
#else
#define IS_SANITIZED 0
#endif

#if IS_SANITIZED

// The sanitizer answers malloc itself, so what is counted there is operator new.
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

#else

// The C library's own, under the names that it keeps for those who replace them.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* memory, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

void* malloc(std::size_t bytes) noexcept {
    ++allocations;
    return __libc_malloc(bytes);
}

void* calloc(std::size_t count, std::size_t bytes) noexcept {
    ++allocations;
    return __libc_calloc(count, bytes);
}

void* realloc(void* memory, std::size_t bytes) noexcept {
    ++allocations;
    return __libc_realloc(memory, bytes);
}

void* aligned_alloc(std::size_t alignment, std::size_t bytes) noexcept {
    ++allocations;
    return __libc_memalign(alignment, bytes);
}
}

#endif
