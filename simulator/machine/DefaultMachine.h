#pragma once

// The machine that is made when none is given.

#include "simulator/machine/Machine.h"

namespace simulator {

// Plugs its four cards into a machine that is off: a VornMX-B (board A) whose firmware, version 10, is of
// flavour M; a Vorn K40 (board B) and a Vorn DX8 (no board revision) with version 7 of flavour W; and, with
// version 2 of flavour W, a Vorn DX8-XS (no board revision) that was never given an identity.
void addDefaultCards(Machine& machine);

}  // namespace simulator
