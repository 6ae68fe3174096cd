#include "app/hosts/HostProcess.h"

#include <csignal>
#include <system_error>

#include "files/StandardDescriptors.h"

namespace {

void setHandler(int signalNumber, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signalNumber, &action, nullptr);
}

void carryOn(int /*signalNumber*/) {}

}  // namespace

void SetUpProcess() {
    files::reserveStandardDescriptors();
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
