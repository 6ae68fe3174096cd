#include "simulator/guest/proxy/Emulator.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "files/UserError.h"

namespace simulator {
namespace {

constexpr int kEndedBySignal = 128;

// In the child: becomes the command, or returns why it cannot.
int become(char* const* command, std::span<const int> inherited) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    for (const int descriptor : inherited) {
        ::fcntl(descriptor, F_SETFD, 0);
    }
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    std::signal(SIGXFSZ, SIG_DFL);
    ::execvp(command[0], command);
    return errno;
}

}  // namespace

Emulator::Emulator(std::vector<std::string> command, std::span<const int> inherited) {
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (std::string& word : command) {
        words.push_back(word.data());
    }
    words.push_back(nullptr);
    std::array<int, 2> failures{};
    if (::pipe2(failures.data(), O_CLOEXEC) != 0) {
        throw files::UserError(std::string("A pipe could not be created (") + std::strerror(errno) + ").");
    }
    process_ = ::fork();
    int failure = process_ < 0 ? errno : 0;
    if (process_ == 0) {
        failure = become(words.data(), inherited);
        [[maybe_unused]] const ssize_t written = ::write(failures[1], &failure, sizeof(failure));
        ::_exit(1);
    }
    ::close(failures[1]);
    if (process_ > 0 && ::read(failures[0], &failure, sizeof(failure)) != sizeof(failure)) {
        failure = 0;
    }
    ::close(failures[0]);
    if (failure != 0) {
        ::waitpid(process_, nullptr, 0);
        throw files::UserError(command.front() + ": could not be started (" + std::strerror(failure) + ").");
    }
}

Emulator::~Emulator() {
    if (!exitCode()) {
        signal(SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
}

void Emulator::signal(int number) const {
    if (!exitCode_) {
        ::kill(process_, number);
    }
}

std::optional<int> Emulator::exitCode() {
    int status = 0;
    if (!exitCode_ && ::waitpid(process_, &status, WNOHANG) == process_) {
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : kEndedBySignal + WTERMSIG(status);
    }
    return exitCode_;
}

}  // namespace simulator
