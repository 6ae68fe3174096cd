#pragma once

// What every host's main does around its own work: the command line, the display, and errors.

#include <CLI/CLI.hpp>
#include <functional>

// The exit codes of all hosts' programs, besides 0, kDisplayLost (app/UpdaterMain.h) and, for a simulated
// machine's loss of power, kPowerWasLost (simulator/storage/PowerLoss.h).
enum ExitCode {
    kFailed = 1,
    kWrongUsage = 2,
    kNoDisplay = 4,
};

// Writes "PROGRAM: WHAT" on standard error.
void Say(const char* program, const char* what);

struct Program {
    const char* name;
    const char* description;
    std::function<void(CLI::App& commandLine)> addArguments;  // besides --help and --version
    std::function<int()> run;                                 // returns the exit code
};

// Sets up the process, parses the command line, opens the display and runs the program; returns its exit
// code. Reports exceptions and a wrong command line, and answers a request for help or the version.
[[nodiscard]] int RunProgram(const Program& program, int argc, char** argv);
