#pragma once

// Commands for the shell, run with the user's own rights.

#include <string>
#include <string_view>

// A text in double quotes for a shell command, escaped so that nothing in it is taken for a command.
std::string Quoted(std::string_view text);

// Runs a command by the shell and waits for it; 0 if it succeeded. It has no terminal, so no tool can stop to
// ask a question there, and what it creates is for this user alone.
int RunByShell(const std::string& command);
