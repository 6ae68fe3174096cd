#pragma once

// xsvf: makes, shows, lists, assembles and checks firmware images.

#include <iosfwd>
#include <string>
#include <vector>

namespace tools {

// Runs one command line (without the program's name). Results go to `out`, complaints to `err`;
// returns a tools::ExitCode.
[[nodiscard]] int runXsvf(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace tools
