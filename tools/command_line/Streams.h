#pragma once

// What a command line reads and writes. A file named "-" is standard input or standard output.
//
// Failures are files::UserError.

#include <cstdint>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

namespace tools {

bool isStandardStream(const std::string& name);

// For CLI11: what is wrong with the name of a file; empty if nothing is.
std::string checkFileName(const std::string& name);
// The same for a file or folder that cannot be a standard stream.
std::string checkPath(const std::string& name);

// For callbacks: ends the command with kWrongUsage if standard input is named more than once.
void refuseStandardInputTwice(const std::vector<std::string>& names);

// The name of an input in messages: the file's, or "standard input".
std::string inputName(const std::string& name);

// A whole file, or all of standard input.
std::vector<uint8_t> readInput(const std::string& name);

// Creates or replaces an ordinary file and then prints `message` to `out`; for "-", prints the content alone.
// Throws if the file cannot be written, belongs to a simulated machine, or is the one it was made from.
void writeOutput(const std::string& name, std::span<const uint8_t> content, std::ostream& out,
                 const std::string& message, const std::string& madeFrom = "");

// Prints JSON with an indent. Bytes that are not UTF-8, which file names may hold, become U+FFFD.
void writeJson(const nlohmann::ordered_json& value, std::ostream& out);

}  // namespace tools
