#pragma once

// A card's PROM taken out to a file, filled from one, and compared with a firmware image.

#include "tools/cardsim/MachineArguments.h"

namespace cardsim {

// Adds the subcommand prom, with dump, load and compare. The stream must outlive the parsing.
void addPromCommands(CLI::App& program, std::ostream& out);

}  // namespace cardsim
