#pragma once

// Files that a command line names, where "-" is standard input or standard output.

#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

namespace tools {

// Whether this names standard input or output.
[[nodiscard]] bool isStandardStream(const std::string& name);

// A check of the names of files to read, after which standard input is read once at most. For callbacks.
void refuseStandardInputTwice(const std::vector<std::string>& names);

// The name of a file to read, as complaints have it.
[[nodiscard]] std::string inputName(const std::string& name);

// A whole file, or all of standard input. Throws std::runtime_error, naming it, when it cannot be read.
[[nodiscard]] std::vector<uint8_t> readInput(const std::string& name);

// Throws std::runtime_error if writing there would harm a simulated machine: in a machine's folder, its
// machine.json, what is there with the ending .prom, and what a save under way goes by.
void requireOutsideMachines(const std::string& name);

// Puts the content into an ordinary file's place and then `message` on `out`; or, for "-", the content alone
// on `out`. Throws std::runtime_error when the file cannot be written, belongs to a simulated machine or
// is the one it was made from.
void writeOutput(const std::string& name, std::span<const uint8_t> content, std::ostream& out,
                 const std::string& message, const std::string& madeFrom = "");

}  // namespace tools
