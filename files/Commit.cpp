#include "files/Commit.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "files/FileError.h"

namespace files {
namespace {

constexpr const char* kIncomplete = ".saving";
constexpr const char* kComplete = ".saved";

// One of the two inner folders, if it is there.
std::optional<Folder> innerFolder(const Folder& folder, const char* name) {
    if (const auto status = folder.status(name); status && !S_ISDIR(status->st_mode)) {
        throw FileError(folder.pathOf(name),
                        "is in the way of a folder that saving needs; move or delete it and try again");
    }
    return folder.inner(name);
}

// Deletes what a commit left over before it took effect.
void discard(const Folder& folder) {
    if (const auto incomplete = innerFolder(folder, kIncomplete)) {
        for (const std::string& name : incomplete->names()) {
            incomplete->remove(name);
        }
        folder.removeInner(kIncomplete);
    }
}

void moveIntoPlace(const Folder& folder, const Folder& complete, const std::string& first) {
    std::vector<std::string> names = complete.names();
    std::partition(names.begin(), names.end(), [&](const std::string& name) { return name == first; });
    for (const std::string& name : names) {
        complete.move(name, folder);
    }
    folder.removeInner(kComplete);
}

Folder begin(const Folder& folder, const std::string& first) {
    recover(folder, first);
    folder.createInner(kIncomplete);
    return folder.inner(kIncomplete).value();
}

}  // namespace

void recover(const Folder& folder, const std::string& first) {
    if (const auto complete = innerFolder(folder, kComplete)) {
        moveIntoPlace(folder, *complete, first);
    }
    discard(folder);
}

bool belongsToCommits(const std::string& name) {
    return name == kIncomplete || name == kComplete;
}

OpenFile committedFile(const Folder& folder, const std::string& name) {
    // In this order, because a file moves from the inner folder to the outer one.
    try {
        if (const auto complete = innerFolder(folder, kComplete); complete && complete->status(name)) {
            return complete->file(name, Folder::Purpose::reading);
        }
    } catch (const FileError& error) {
        if (error.systemError() != ENOENT) {
            throw;
        }
    }
    return folder.file(name, Folder::Purpose::reading);
}

bool isCommitted(const std::filesystem::path& folder, const std::string& name) {
    std::error_code ignored;
    return std::filesystem::exists(folder / name, ignored) ||
           std::filesystem::exists(folder / kComplete / name, ignored);
}

Commit::Commit(const Folder& folder, std::string first)
    : folder_(folder), first_(std::move(first)), inner_(begin(folder, first_)) {}

Commit::~Commit() {
    if (isTaken_) {
        return;
    }
    try {
        discard(folder_);
    } catch (const FileError&) {
        // The next commit tries again.
    }
}

void Commit::put(const std::string& name, std::span<const uint8_t> content) {
    inner_.create(name, content, folder_.status(name), folder_.pathOf(name));
}

void Commit::take() {
    folder_.rename(kIncomplete, kComplete, folder_.path());
    isTaken_ = true;
    moveIntoPlace(folder_, inner_, first_);
}

}  // namespace files
