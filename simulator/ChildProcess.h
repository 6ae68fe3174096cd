#pragma once

// Starting programs as children of this process.

#include <string>
#include <vector>

namespace simulator {

// Starts a program, named by its absolute path; the arguments do not name it. The caller waits for the child.
// False, with no child, when the program cannot be started.
[[nodiscard]] bool startChild(const std::string& program, std::vector<std::string> arguments);

// Whether this process has a child, running or ended, that nobody has waited for yet.
[[nodiscard]] bool hasChild();

}  // namespace simulator
