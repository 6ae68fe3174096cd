#pragma once

// How the tools run a command line: what they end with, and how they complain.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <limits>
#include <string>
#include <vector>

namespace tools {

enum ExitCode { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// Runs a program whose subcommands work in their callbacks, on a command line without the program's name, and
// returns its exit code. An exception from a callback is a failure, and its text the complaint; for another
// exit code than kFailed a callback throws CLI::RuntimeError, having complained itself. `out` is where the
// callbacks write; complaints go to `err`. Output that is lost is a failure, whatever else came of it.
[[nodiscard]] int runCommandLine(CLI::App& program, const std::vector<std::string>& arguments,
                                 std::ostream& out, std::ostream& err);

// For callbacks: the options, each good by itself, do not go together. `what` is a sentence.
[[noreturn]] void refuseUsage(const std::string& what);

// To transform the text of an option that takes a whole number within bounds, in decimal. CLI11 by itself
// takes "010" for 8 and "-1" for the greatest number there is.
[[nodiscard]] CLI::Validator wholeNumber(uint64_t least,
                                         uint64_t most = std::numeric_limits<uint64_t>::max());

// A check of an option whose text `parse` must take; `form` says, in a sentence, what such a text is.
template <typename Parse>
[[nodiscard]] std::function<std::string(const std::string&)> takenBy(Parse parse, const std::string& form) {
    return [=](const std::string& text) { return parse(text) ? std::string() : form; };
}

// A check of an option that names a file: it has to say something.
[[nodiscard]] inline std::function<std::string(const std::string&)> fileName() {
    return takenBy([](const std::string& text) { return !text.empty(); }, "The file name must not be empty.");
}

}  // namespace tools
