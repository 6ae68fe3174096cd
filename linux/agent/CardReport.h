#pragma once

// The report on this computer's cards for the administrator.

#include <iosfwd>

#include "linux/agent/CardKeeper.h"

namespace agent {

// Lists the computer's cards that the rules name, and for each whether it can be used or why not. Returns
// whether one can.
bool reportCards(CardKeeper& keeper, std::ostream& out);

}  // namespace agent
