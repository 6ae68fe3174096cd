#pragma once

// `cardsim driver`: which driver a machine has, and what goes wrong with the one that the updater brings.

#include <nlohmann/json.hpp>
#include <string>

#include "tools/cardsim/MachineArguments.h"

namespace cardsim {

// Adds the subcommand driver. The stream must outlive the parsing.
void addDriverCommand(CLI::App& program, std::ostream& out);

// How a machine's drivers are, in one line: "resident", or "none; administrator refused".
[[nodiscard]] std::string describe(const simulator::Drivers& drivers);

// The same with the command's words: resident, loaded, administrator and privateDriver.
[[nodiscard]] nlohmann::ordered_json jsonOf(const simulator::Drivers& drivers);

}  // namespace cardsim
