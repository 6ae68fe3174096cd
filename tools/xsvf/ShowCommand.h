#pragma once

// `xsvf show`: what images are.

#include <iosfwd>

namespace CLI {
class App;
}

namespace tools {

// Adds the subcommand to the program; it shows images on `out`, one with a fault with it, and tells on `err`
// which cannot be read.
void addShowCommand(CLI::App& program, std::ostream& out, std::ostream& err);

}  // namespace tools
