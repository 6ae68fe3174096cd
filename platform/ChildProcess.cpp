#include "platform/ChildProcess.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {

std::optional<pid_t> startChild(const std::string& program, std::vector<std::string> arguments) {
    std::string name = program;
    std::vector<char*> list{name.data()};
    for (std::string& argument : arguments) {
        list.push_back(argument.data());
    }
    list.push_back(nullptr);
    pid_t child = 0;
    if (::posix_spawn(&child, program.c_str(), nullptr, nullptr, list.data(), environ) != 0) {
        return std::nullopt;
    }
    return child;
}

bool isUnwaitedFor(pid_t child) {
    siginfo_t state;
    return ::waitid(P_PID, static_cast<id_t>(child), &state, WEXITED | WNOHANG | WNOWAIT) == 0;
}

}  // namespace platform
