#pragma once

// `xsvf make`: writes a firmware image, under the name that the updater looks for, into a directory.

#include <iosfwd>

namespace CLI {
class App;
}

namespace tools {

// Adds the subcommand to the program; the image's path goes to `out`. It throws std::runtime_error, saying
// which file failed and how, when the image could not be made; a file that was in its place is then as it
// was.
void addMakeCommand(CLI::App& program, std::ostream& out);

}  // namespace tools
