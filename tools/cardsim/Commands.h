#pragma once

// The subcommands of cardsim, with one source file for each subject.
//
// Each function adds its subcommands to the program. They print to `out`, which must outlive the parsing.

#include <CLI/CLI.hpp>
#include <iosfwd>

namespace cardsim {

// The exit code of a comparison that found differences. The others are tools::ExitCode and, of a guest's run,
// simulator::kPowerWasLost.
constexpr int kDifferent = 3;

void addMachineCommands(CLI::App& program, std::ostream& out);  // make, show, power-cycle, -on and -off
void addCardCommands(CLI::App& program, std::ostream& out);     // add, remove, change
void addFaultCommands(CLI::App& program, std::ostream& out);    // fault inject, clear and kinds
void addDriverCommand(CLI::App& program, std::ostream& out);    // driver
void addPromCommands(CLI::App& program, std::ostream& out);     // prom dump, load and compare
void addRecordCommand(CLI::App& program, std::ostream& out);    // record
void addServeCommand(CLI::App& program, std::ostream& out);     // serve

}  // namespace cardsim
