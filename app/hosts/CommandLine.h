#pragma once

// What every host's main does around its own work: the command line, the display, and errors.

#include <CLI/CLI.hpp>
#include <functional>

// The exit codes of all hosts' programs, besides kDisplayLost (app/UpdaterMain.h) and 0.
enum ExitCode {
    kFailed = 1,
    kWrongUsage = 2,
    kPowerWasLost = 3,
    kNoDisplay = 4,
};

// Writes "PROGRAM: WHAT" on standard error.
void Say(const char* program, const char* what);

// Sets up the process, parses the command line, opens the display and calls the function, whose result is the
// program's exit code. If the command line asks for something else, or is wrong, that is told instead. An
// exception is told, too. The command line has the program's name, and gets the option --version here.
int RunProgram(CLI::App& commandLine, int argc, char** argv, const std::function<int()>& run);
