#pragma once

// The machine that anyone gets who brings none.

#include "simulator/Machine.h"

namespace simulator {

// Plugs its three cards into a machine that is off: a VornMX-B (board A) whose firmware, version 10, is of
// flavour M, and a Vorn K40 (board B) and a Vorn DX8 (no board revision) with version 7 of flavour W.
void addDefaultCards(Machine& machine);

}  // namespace simulator
