#pragma once

// What cardsim says about a machine.

#include <iosfwd>
#include <optional>
#include <string>

#include "simulator/Machine.h"

namespace cardsim {

// A configuration in one line, such as "VornMX-B, board A, firmware M 10 of 17 May 2004".
[[nodiscard]] std::string describe(const std::optional<simulator::FpgaConfiguration>& configuration);

void showMachine(const simulator::Machine& machine, std::ostream& out);

}  // namespace cardsim
