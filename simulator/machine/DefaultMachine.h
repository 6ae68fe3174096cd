#pragma once

// The machine that is made when none is given.

#include "simulator/machine/Machine.h"

namespace simulator {

// Adds four cards to a machine that is off: a VornMX-B (board A) with firmware version 10, flavour M; a Vorn
// K40 (board B) and a Vorn DX8 (no board revision), both with version 7, flavour W; and a Vorn DX8-XS (no
// board revision) with version 2, flavour W, and no identity yet.
void addDefaultCards(Machine& machine);

}  // namespace simulator
