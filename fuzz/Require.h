#pragma once

// Ends a fuzz target when a condition does not hold, with a message that the fuzzer shows with the input.

#include <cstdio>
#include <cstdlib>

inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", what);
        std::abort();
    }
}
