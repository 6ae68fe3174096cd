#pragma once

// Text from a file, a folder or a command line, fit for a terminal.

#include <string>
#include <string_view>

namespace files {

// One line that moves nothing on a terminal: every control character becomes its number, such as \x1B. Other
// bytes stay as they are.
[[nodiscard]] std::string printable(std::string_view text);

}  // namespace files
