#include "simulator/ChildProcess.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace simulator {

bool startChild(const std::string& program, std::vector<std::string> arguments) {
    std::string name = program;
    std::vector<char*> list{name.data()};
    for (std::string& argument : arguments)
        list.push_back(argument.data());
    list.push_back(nullptr);
    pid_t child = 0;
    return ::posix_spawn(&child, program.c_str(), nullptr, nullptr, list.data(), environ) == 0;
}

bool hasChild() {
    siginfo_t child;
    return ::waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == 0;
}

}  // namespace simulator
