#pragma once

// cardsim: makes, shows, changes, breaks and power-cycles simulated machines.

#include <iosfwd>
#include <string>
#include <vector>

namespace cardsim {

// kDifferent is for a comparison that was made and found differences.
enum ExitCode { kDone = 0, kFailed = 1, kWrongUsage = 2, kDifferent = 3 };

// Runs one command line (without the program's name). Listings go to `out`, complaints to `err`.
[[nodiscard]] int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace cardsim
