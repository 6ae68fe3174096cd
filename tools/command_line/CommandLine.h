#pragma once

// How the tools run a command line: what they end with, and how they complain.

#include <CLI/CLI.hpp>
#include <iosfwd>
#include <string>
#include <vector>

namespace tools {

enum ExitCode { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// Runs a program whose subcommands work in their callbacks, on a command line without the program's name, and
// returns its exit code. An exception from a callback is a failure, and its text the complaint; for another
// exit code than kFailed a callback throws CLI::RuntimeError, having complained itself. `out` is where the
// callbacks write; complaints go to `err`.
[[nodiscard]] int runCommandLine(CLI::App& program, const std::vector<std::string>& arguments,
                                 std::ostream& out, std::ostream& err);

}  // namespace tools
