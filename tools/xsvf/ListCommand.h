#pragma once

// `xsvf list`: shows an image command by command.

#include <iosfwd>

namespace CLI {
class App;
}

namespace tools {

// Adds the subcommand to the program; the listing goes to `out` unless a file is named. It throws
// std::runtime_error, naming the file, when one cannot be read or written. No image is too broken to be
// listed.
void addListCommand(CLI::App& program, std::ostream& out);

}  // namespace tools
