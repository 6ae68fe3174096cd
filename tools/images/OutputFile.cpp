#include "tools/images/OutputFile.h"

#include <stdexcept>

#include "simulator/Files.h"

namespace tools {

namespace fs = std::filesystem;

fs::path behindLinks(fs::path path) {
    const std::string name = path.string();
    std::error_code error;
    constexpr int kMostLinks = 40;  // as the system
    for (int links = 0; fs::is_symlink(fs::symlink_status(path, error)); ++links) {
        const fs::path goal = fs::read_symlink(path, error);
        if (error || links == kMostLinks) {
            throw std::runtime_error(name + ": is a link that leads nowhere.");
        }
        path = path.parent_path() / goal;
    }
    return path;
}

void writeOutputFile(const fs::path& path, std::span<const uint8_t> content, const fs::path& madeFrom) {
    std::error_code ignored;
    const fs::file_status present = fs::status(path, ignored);
    // A folder cannot be replaced, and a device or a pipe must not be.
    if (fs::exists(present) && !fs::is_regular_file(present)) {
        throw std::runtime_error(path.string() + ": is not an ordinary file.");
    }
    if (!madeFrom.empty() && fs::equivalent(path, madeFrom, ignored)) {
        throw std::runtime_error(path.string() + ": would be replaced by what is made from it.");
    }
    simulator::replaceFile(behindLinks(path), content);
}

}  // namespace tools
