#pragma once

// xsvf: makes, lists, assembles and checks firmware images.

#include <iosfwd>
#include <string>
#include <vector>

namespace tools {

enum XsvfExitCode { kXsvfDone = 0, kXsvfFailed = 1, kXsvfWrongUsage = 2 };

// Runs one command line (without the program's name). Results go to `out`, complaints to `err`.
[[nodiscard]] int runXsvf(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace tools
