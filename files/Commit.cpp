#include "files/Commit.h"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

#include "files/FileError.h"

namespace files {
namespace {

constexpr const char* kIncomplete = ".saving";
constexpr const char* kComplete = ".saved";

void discard(const Folder& folder) {
    if (const auto incomplete = folder.inner(kIncomplete)) {
        for (const std::string& name : incomplete->names()) {
            incomplete->remove(name);
        }
        folder.removeInner(kIncomplete);
    }
}

void bringIn(const Folder& folder, const Folder& complete, const std::string& first) {
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
    if (const auto complete = folder.inner(kComplete)) {
        bringIn(folder, *complete, first);
    }
    discard(folder);
}

bool belongsToCommits(const std::string& name) {
    return name == kIncomplete || name == kComplete;
}

OpenFile committedFile(const Folder& folder, const std::string& name) {
    // In this order: a file that is on its way in is either here still or there already.
    try {
        if (const auto complete = folder.inner(kComplete); complete && complete->status(name)) {
            return complete->file(name, Folder::Purpose::reading);
        }
    } catch (const FileError& error) {
        if (error.systemError() != ENOENT) {
            throw;
        }
    }
    return folder.file(name, Folder::Purpose::reading);
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
        // It is worth nothing, and the next commit tries again.
    }
}

void Commit::put(const std::string& name, std::span<const uint8_t> content) {
    inner_.create(name, content, folder_.status(name), folder_.pathOf(name));
}

void Commit::take() {
    folder_.rename(kIncomplete, kComplete, folder_.path());
    isTaken_ = true;
    bringIn(folder_, inner_, first_);
}

}  // namespace files
