#pragma once

// How the tools run a command line and report errors.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <limits>
#include <string>
#include <vector>

namespace tools {

enum ExitCode { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// Runs a program whose subcommands do their work in CLI11's callbacks, and returns its exit code. The
// arguments do not include the program's name. A callback reports a failure by throwing files::UserError,
// whose text goes to `err`. `out` is where the callbacks write; output that cannot be written is a failure,
// too.
[[nodiscard]] int runCommandLine(CLI::App& program, const std::vector<std::string>& arguments,
                                 std::ostream& out, std::ostream& err);

// For callbacks: ends the command with kWrongUsage because options that are valid by themselves do not go
// together. `what` is a sentence.
[[noreturn]] void refuseUsage(const std::string& what);

// For callbacks: ends the command with an exit code when the output or `err` has said everything already.
[[noreturn]] void exitWith(int exitCode);

// A transformation for an option that takes a decimal whole number within bounds. CLI11 by itself reads "010"
// as 8 and "-1" as the largest number.
CLI::Validator wholeNumber(uint64_t least, uint64_t most = std::numeric_limits<uint64_t>::max());

// A check for an option whose text `parse` must accept; `form` is the sentence that says what is accepted.
template <typename Parse>
std::function<std::string(const std::string&)> takenBy(Parse parse, const std::string& form) {
    return [=](const std::string& text) { return parse(text) ? std::string() : form; };
}

}  // namespace tools
