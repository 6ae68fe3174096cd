#pragma once

// Cards plugged in, pulled out and changed.

#include "tools/cardsim/MachineArguments.h"

namespace cardsim {

// Adds the subcommands add, remove and change. The stream must outlive the parsing.
void addCardCommands(CLI::App& program, std::ostream& out);

}  // namespace cardsim
