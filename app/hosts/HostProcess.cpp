#include "app/hosts/HostProcess.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <initializer_list>
#include <system_error>

namespace {

// A file or connection with one of these numbers would receive messages meant for the user.
void openStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free number is this one.
            [[maybe_unused]] const int opened = open("/dev/null", O_RDWR);
        }
    }
}

void setHandler(int signalNumber, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signalNumber, &action, nullptr);
}

void carryOn(int /*signalNumber*/) {}

}  // namespace

void SetUpProcess() {
    openStandardDescriptors();
    // A handler, because children would inherit an ignored signal.
    setHandler(SIGPIPE, carryOn);
    setHandler(SIGXFSZ, carryOn);
    setHandler(SIGCHLD, SIG_DFL);
}

std::filesystem::path BundleBesideExecutable() {
    std::error_code error;
    auto bundle = std::filesystem::read_symlink("/proc/self/exe", error);
    bundle += ".app";
    return std::filesystem::is_directory(bundle, error) ? bundle : std::filesystem::path();
}
