#pragma once

// `xsvf assemble`: makes an image from its listing.

#include <iosfwd>

namespace CLI {
class App;
}

namespace tools {

// Adds the subcommand to the program; the image's path, or the image itself, goes to `out`. It throws
// std::runtime_error, naming file, line and reason, when the image could not be made; a file that was in its
// place is then as it was.
void addAssembleCommand(CLI::App& program, std::ostream& out);

}  // namespace tools
