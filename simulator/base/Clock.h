#pragma once

// The machine's time: a count of register accesses, three to the microsecond. Nothing else moves it.
//
// A device that waits for a moment asks to be woken at an access count. The clock then wakes the whole
// machine, which tells every card, so an access costs one increment and one comparison.

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <utility>

namespace simulator {

class Clock {
  public:
    static constexpr uint64_t kAccessesPerMicrosecond = 3;

    // Since the machine was made, in all runs: switching it off does not reset them. Microseconds are whole
    // ones, rounded down.
    uint64_t accesses() const { return accesses_; }
    uint64_t microseconds() const { return accesses_ / kAccessesPerMicrosecond; }

    // Counts one access, before it is carried out. True if wake() must be called first.
    [[nodiscard]] bool tick() { return ++accesses_ >= wakeAt_; }
    // Runs the callback, which lets every device see what is due.
    void wake() {
        wakeAt_ = kNever;
        if (onWake_) {
            onWake_();
        }
    }

    // Asks for the wake-up call when the count reaches `accesses`; at the next access if it already has.
    void wakeAt(uint64_t accesses) { wakeAt_ = std::min(wakeAt_, accesses); }

    // Sets the callback. The pending wake-up is cleared before it runs; those still waiting must ask again.
    void onWake(std::function<void()> callback) { onWake_ = std::move(callback); }

    // Continues from the count that an earlier run reached.
    void resume(uint64_t accesses) { accesses_ = accesses; }

    // Lets time pass without accesses. Wakes nobody, even if a moment goes by.
    void advance(uint64_t accesses) { accesses_ += accesses; }

  private:
    static constexpr uint64_t kNever = std::numeric_limits<uint64_t>::max();

    uint64_t accesses_ = 0;
    uint64_t wakeAt_ = kNever;
    std::function<void()> onWake_;
};

}  // namespace simulator
