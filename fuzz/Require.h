#pragma once

// How a fuzz target says that something does not hold: a line that the fuzzer shows with the input, and the
// end.

#include <cstdio>
#include <cstdlib>

inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", what);
        std::abort();
    }
}
