#pragma once

// Faults put into cards and taken away.

#include "tools/cardsim/MachineArguments.h"

namespace cardsim {

// Adds the subcommand fault, with inject, clear and kinds. The stream must outlive the parsing.
void addFaultCommands(CLI::App& program, std::ostream& out);

// A fault in one line, such as "page-misread, page 7, 3 times, at access 1000 (waiting)".
[[nodiscard]] std::string describe(const simulator::Fault& fault);

}  // namespace cardsim
