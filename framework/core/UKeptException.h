#pragma once

// Exceptions must not cross the event loop's own frames, nor unwind a firmware write that happens to be
// running below them. Every entry point that the event loop calls runs inside KeepException; the outermost
// pass of LApplication::ProcessNextEvent rethrows what was kept.

#include <utility>

namespace UKeptException {

// Keeps the exception that is being handled, for RethrowKept. If one is kept already, a further one goes to
// standard error: the first names the cause.
void KeepCurrent() noexcept;

// Throws the kept exception and forgets it; does nothing if there is none.
void RethrowKept();

}  // namespace UKeptException

// Calls a function and keeps what it throws.
template <typename Function>
void KeepException(Function&& function) noexcept {
    try {
        std::forward<Function>(function)();
    } catch (...) {
        UKeptException::KeepCurrent();
    }
}
