#pragma once

// Commands for the shell, run with the user's own rights.

#include <string>
#include <string_view>

// A text in double quotes for a shell command, escaped so that the shell interprets nothing in it.
std::string Quoted(std::string_view text);

// Runs a command in the shell and waits for it. Returns 0 if it succeeded. It has no terminal, so no tool can
// stop to ask a question, and only this user can access what it creates.
[[nodiscard]] int RunByShell(const std::string& command);
