#pragma once

// Cards plugged in, pulled out and changed.

#include "tools/cardsim/Context.h"

namespace cardsim {

// Adds the subcommands add, remove and change. The context must outlive the parsing.
void addCardCommands(CLI::App& program, Context& context);

}  // namespace cardsim
