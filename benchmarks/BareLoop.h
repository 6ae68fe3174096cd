#pragma once

// The measure of the player and the simulator: register accesses and nothing else.

#include <cstdint>

namespace benchmarks {

struct Accesses {
    uint64_t loads = 0;
    uint64_t stores = 0;
};

// So many accesses of the open card's JTAG output register.
void makeAccesses(const Accesses& accesses);

}  // namespace benchmarks
