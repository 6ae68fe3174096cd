#pragma once

// What the administrator is told about this computer's cards.

#include <iosfwd>

#include "linux/agent/CardKeeper.h"

// Writes which cards the rules name and the computer has, and for each whether it can be used or why not.
// Returns whether one can.
bool reportCards(CardKeeper& keeper, std::ostream& out);
