#pragma once

// Counts this program's heap allocations through malloc, calloc, realloc and operator new, which calls
// malloc. Only one file of a test program may include it.

#include <cstddef>

#if defined(__has_feature)
#define IS_SANITIZED __has_feature(address_sanitizer)
#else
#define IS_SANITIZED 0
#endif

inline std::size_t allocations = 0;

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
#if IS_SANITIZED

// The sanitizer replaces malloc and its relatives, and calls this for each allocation.
void __sanitizer_malloc_hook(const volatile void* /*memory*/, std::size_t /*bytes*/) {
    ++allocations;
}

#else

// The C library's functions, under the names it keeps for programs that replace them.
void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* memory, std::size_t bytes);

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

#endif
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
