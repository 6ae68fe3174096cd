#pragma once

// The subcommands of xsvf, with one source file for each subject.
//
// Each function adds its subcommands to the program. They print to `out`, and errors that do not end the
// command to `err`; both streams must outlive the parsing.

#include <CLI/CLI.hpp>
#include <iosfwd>

namespace tools {

void addMakeCommand(CLI::App& program, std::ostream& out);
void addListingCommands(CLI::App& program, std::ostream& out);                   // list, assemble
void addCheckCommands(CLI::App& program, std::ostream& out, std::ostream& err);  // show, check

}  // namespace tools
