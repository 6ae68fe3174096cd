#include "framework/core/KeptException.h"

#include <cstdio>
#include <utility>

void KeptException::KeepCurrent() noexcept {
    if (!mKept) {
        mKept = std::current_exception();
        return;
    }
    try {
        throw;
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "Further error: %s\n", exception.what());
    } catch (...) {
        std::fprintf(stderr, "Further error of an unknown kind\n");
    }
}

void KeptException::Rethrow() {
    if (mKept) {
        std::rethrow_exception(std::exchange(mKept, nullptr));
    }
}
