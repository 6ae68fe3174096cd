#pragma once

// Child processes, for the hosts.

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace platform {

// Starts a program by its absolute path; the arguments do not include its name. Returns the child, which the
// caller must wait for, or nothing if the program cannot be started.
[[nodiscard]] std::optional<pid_t> startChild(const std::string& program, std::vector<std::string> arguments);

// Whether a child of this process, running or ended, has not been waited for yet.
bool isUnwaitedFor(pid_t child);

}  // namespace platform
