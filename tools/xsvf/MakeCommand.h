#pragma once

// `xsvf make`: writes a firmware image, under the name that the updater looks for, into a directory.

namespace CLI {
class App;
}

namespace tools {

// Adds the subcommand to the program. It throws std::runtime_error, saying which file failed and how, when
// the image could not be made; a half-written file does not stay.
void addMakeCommand(CLI::App& program);

}  // namespace tools
