#pragma once

// What the player and the simulator are measured against: register accesses and nothing else.

#include <cstdint>

namespace benchmarks {

struct Accesses {
    uint64_t loads = 0;
    uint64_t stores = 0;
};

// Accesses the open card's JTAG output register that many times.
void makeAccesses(const Accesses& accesses);

}  // namespace benchmarks
