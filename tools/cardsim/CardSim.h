#pragma once

// cardsim: makes, shows and power-cycles simulated machines.

#include <iosfwd>
#include <string>
#include <vector>

namespace cardsim {

enum ExitCode { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// Runs one command line (without the program's name). Listings go to `out`, complaints to `err`.
[[nodiscard]] int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace cardsim
