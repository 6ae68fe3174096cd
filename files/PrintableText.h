#pragma once

// Makes text from a file, a folder, a command line or another program safe to show on a terminal.

#include <string>
#include <string_view>

namespace files {

// The text with each control character replaced by its number, such as \x1B. It is one line. Other bytes stay
// as they are.
std::string printable(std::string_view text);

// Writes the text to standard error, made printable, as one line.
void say(std::string_view text);

}  // namespace files
