#pragma once

// What the player and the simulator are measured against: register accesses and nothing else.

#include "images/AccessCount.h"

namespace benchmarks {

// Accesses the open card's JTAG output register that many times.
void makeAccesses(const images::Accesses& accesses);

}  // namespace benchmarks
