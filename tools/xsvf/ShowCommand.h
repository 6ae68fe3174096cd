#pragma once

// `xsvf show`: what images are.

#include <iosfwd>

namespace CLI {
class App;
}

namespace tools {

// Adds the subcommand to the program; it writes to `out`. It throws std::runtime_error, naming the file, when
// one cannot be read. An image with a fault is shown with it.
void addShowCommand(CLI::App& program, std::ostream& out);

}  // namespace tools
