#pragma once

// Commands for the shell, run with the user's own rights.

#include <string>
#include <string_view>

// A text as it stands between a shell command's double quotes, where nothing in it may be taken for a
// command.
std::string Quoted(std::string_view text);

// Runs a command by the shell and waits for it; 0 if it succeeded. It has no terminal, so that no tool can
// stop to ask there for what nobody expects to be asked, and what it creates is for this user alone.
int RunByShell(const std::string& command);
