#include "platform/ExecutableBundle.h"

std::filesystem::path BundleBesideExecutable() {
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        return {};
    }
    auto bundle = executable.parent_path() / "VUpdater.app";
    return std::filesystem::is_directory(bundle, error) ? bundle : std::filesystem::path();
}
