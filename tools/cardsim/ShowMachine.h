#pragma once

// What cardsim says about a machine.

#include <iosfwd>
#include <nlohmann/json.hpp>

#include "simulator/machine/Machine.h"

namespace cardsim {

// In lines for people.
void showMachine(const simulator::Machine& machine, std::ostream& out);

// The same as an object, with whether another program has the machine. What a machine does not have or a card
// does not tell is null.
[[nodiscard]] nlohmann::ordered_json machineJson(const simulator::Machine& machine, bool isInUse);

}  // namespace cardsim
