#pragma once

// `xsvf check`: whether images can ship.

#include <iosfwd>

namespace CLI {
class App;
}

namespace tools {

// Adds the subcommand to the program. Every image gets a line: on `out` what it is and what it takes on a
// card, or on `err` the offset and reason of its first fault. With --json, `out` gets all of it as a list. It
// throws CLI::RuntimeError with kFailed after the last line when there was one of these.
void addCheckCommand(CLI::App& program, std::ostream& out, std::ostream& err);

}  // namespace tools
