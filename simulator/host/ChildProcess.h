#pragma once

// Starting programs as children of this process.

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace simulator {

// Starts a program, named by its absolute path; the arguments do not name it. Returns the child, which the
// caller waits for, or nothing when the program cannot be started.
[[nodiscard]] std::optional<pid_t> startChild(const std::string& program, std::vector<std::string> arguments);

// Whether a child of this process, running or ended, has not been waited for yet.
bool isUnwaitedFor(pid_t child);

}  // namespace simulator
