#pragma once

// A host between the player and another host that shortens waits, and ends the run after too many loads. A
// damaged image can ask for half an hour.

#include <cstdint>
#include <functional>
#include <utility>

#include "tests/support/ForwardingHost.h"

class ImpatientHost final : public ForwardingHost {
  public:
    // Thrown out of a load.
    struct OutOfTime {};

    // `leap` is called for each load of a wait that is longer than a signal takes to settle.
    ImpatientHost(Host& host, std::function<void()> leap) : ForwardingHost(host), leap_(std::move(leap)) {}

    // The number of loads until the run ends.
    uint64_t loadsLeft = 0;

    uint32_t loadWord(const uint32_t* address) override {
        if (loadsLeft-- == 0) {
            throw OutOfTime();
        }
        if (++loadsSinceStore_ > kLoadsBeforeLeaping) {
            leap_();
        }
        return ForwardingHost::loadWord(address);
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        loadsSinceStore_ = 0;
        ForwardingHost::storeWord(address, word);
    }

  private:
    static constexpr uint64_t kLoadsBeforeLeaping = 64;

    std::function<void()> leap_;
    uint64_t loadsSinceStore_ = 0;
};
