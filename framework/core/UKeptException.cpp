#include "framework/core/UKeptException.h"

#include <cstdio>
#include <exception>

namespace {

std::exception_ptr gKept;

}  // namespace

void UKeptException::KeepCurrent() noexcept {
    if (!gKept) {
        gKept = std::current_exception();
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

void UKeptException::RethrowKept() {
    if (gKept) {
        std::rethrow_exception(std::exchange(gKept, nullptr));
    }
}
