#include "files/OutputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "files/FileError.h"
#include "files/Folder.h"

namespace files {
namespace {

namespace fs = std::filesystem;

// Creates a file under a name that is not in use, and returns the name.
std::string createUnfinished(const Folder& folder, std::span<const uint8_t> content,
                             const std::optional<struct stat>& like, const fs::path& knownAs) {
    for (int number = 0;; ++number) {
        std::string name = ".unfinished-" + std::to_string(::getpid()) + '-' + std::to_string(number);
        try {
            folder.create(name, content, like, knownAs);
            return name;
        } catch (const FileError& error) {
            if (error.systemError() != EEXIST) {
                throw;
            }
        }
    }
}

}  // namespace

fs::path behindLinks(fs::path path) {
    const fs::path name = path;
    std::error_code error;
    constexpr int kMostLinks = 40;  // the system's own limit
    for (int links = 0; fs::is_symlink(fs::symlink_status(path, error)); ++links) {
        const fs::path goal = fs::read_symlink(path, error);
        if (error || links == kMostLinks) {
            throw FileError(name, "is a link that leads nowhere");
        }
        path = path.parent_path() / goal;
    }
    return path;
}

bool isSameFile(const fs::path& one, const fs::path& other) {
    std::error_code notBothThere;
    return one == other || fs::equivalent(one, other, notBothThere);
}

void writeOutputFile(const fs::path& path, std::span<const uint8_t> content, const fs::path& madeFrom) {
    std::error_code ignored;
    const fs::file_status present = fs::status(path, ignored);
    // A folder cannot be replaced, and a device or a pipe must not be.
    if (fs::exists(present) && !fs::is_regular_file(present)) {
        throw FileError(path, "is not an ordinary file");
    }
    if (!madeFrom.empty() && isSameFile(path, madeFrom)) {
        throw FileError(path, "would be replaced by what is made from it");
    }
    const fs::path goal = behindLinks(path);
    const fs::path parent = goal.has_parent_path() ? goal.parent_path() : ".";
    const Folder folder(OpenFile(AT_FDCWD, parent, O_PATH | O_DIRECTORY, path, "could not be created"));
    const std::string name = goal.filename();
    const std::string unfinished = createUnfinished(folder, content, folder.status(name), path);
    try {
        folder.rename(unfinished, name, path);
    } catch (const FileError&) {
        folder.remove(unfinished);
        throw;
    }
}

}  // namespace files
