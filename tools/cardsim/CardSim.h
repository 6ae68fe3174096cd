#pragma once

// cardsim: makes, shows, changes, breaks and power-cycles simulated machines.

#include <iosfwd>
#include <string>
#include <vector>

namespace cardsim {

// Beside those of every tool (tools::ExitCode): a comparison was made and found differences.
constexpr int kDifferent = 3;

// Runs one command line (without the program's name). Listings go to `out`, complaints to `err`.
[[nodiscard]] int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace cardsim
