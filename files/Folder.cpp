#include "files/Folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "files/FileError.h"

namespace files {
namespace {

constexpr mode_t kFolderMode = 0777;  // less the process's mask
constexpr mode_t kPermissions = 07777;

// A writer tries this often to get the lock, with a pause after each try.
constexpr int kMostTries = 200;
constexpr std::chrono::milliseconds kPause{10};

bool tryLock(int descriptor, int kind) {
    while (::flock(descriptor, kind | LOCK_NB) != 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool leadsTo(const std::filesystem::path& path, const struct stat& here) {
    struct stat there {};
    return ::stat(path.c_str(), &there) == 0 && there.st_dev == here.st_dev && there.st_ino == here.st_ino;
}

OpenFile openFolder(const std::filesystem::path& path) {
    try {
        return OpenFile(AT_FDCWD, path, O_RDONLY | O_DIRECTORY, path);
    } catch (const FileError& error) {
        if (error.systemError() == ENOENT) {
            throw FileError(path, "there is no such folder");
        }
        if (error.systemError() == ENOTDIR) {
            throw FileError(path, "is not a folder");
        }
        throw;
    }
}

}  // namespace

Folder::Folder(const std::filesystem::path& path) : opened_(openFolder(path)) {}

std::optional<Folder> Folder::inner(const std::string& name) const {
    if (!status(name)) {
        return std::nullopt;
    }
    return Folder(OpenFile(opened_.descriptor(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW, pathOf(name)));
}

bool Folder::isAt(const std::filesystem::path& path) const {
    return leadsTo(path.empty() ? "." : path, opened_.status());
}

bool Folder::isFileAt(const std::string& name, const std::filesystem::path& path) const {
    const auto here = status(name);
    return here && leadsTo(path, *here);
}

std::vector<std::string> Folder::names() const {
    // Reading moves a position that duplicates of a descriptor share, so this opens the folder again.
    const int descriptor = ::openat(opened_.descriptor(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(descriptor < 0 ? nullptr : ::fdopendir(descriptor),
                                                      &::closedir);
    if (listing == nullptr) {
        const int reason = errno;
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        throw FileError(opened_.name(), "could not be read", reason);
    }
    std::vector<std::string> names;
    errno = 0;  // stays so at the end of the folder
    while (const dirent* const entry = ::readdir(listing.get())) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(std::move(name));
        }
        errno = 0;
    }
    if (errno != 0) {
        throw FileError(opened_.name(), "could not be read", errno);
    }
    return names;
}

std::optional<struct stat> Folder::status(const std::string& name) const {
    struct stat status {};
    if (::fstatat(opened_.descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
        return status;
    }
    if (errno == ENOENT) {
        return std::nullopt;
    }
    throw FileError(pathOf(name), "could not be looked at", errno);
}

OpenFile Folder::file(const std::string& name, Purpose purpose) const {
    return OpenFile::ordinary(opened_.descriptor(), name, purpose == Purpose::writing ? O_WRONLY : O_RDONLY,
                              pathOf(name));
}

void Folder::create(const std::string& name, std::span<const uint8_t> content,
                    const std::optional<struct stat>& like, const std::filesystem::path& knownAs) const {
    const OpenFile file(opened_.descriptor(), name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, knownAs,
                        "could not be created");
    try {
        if (like && S_ISREG(like->st_mode)) {
            // Only root may change the owner. The mode is set last, because changing the owner clears some of
            // it.
            const bool isGiven = ::fchown(file.descriptor(), like->st_uid, like->st_gid) == 0 ||
                                 ::fchown(file.descriptor(), static_cast<uid_t>(-1), like->st_gid) == 0;
            const mode_t mode = like->st_mode & kPermissions;
            if (::fchmod(file.descriptor(), isGiven ? mode : mode & 0777) != 0) {
                throw FileError(knownAs, "could not be given its permissions", errno);
            }
        }
        file.write(0, content);
        file.flush();
    } catch (const FileError&) {
        ::unlinkat(opened_.descriptor(), name.c_str(), 0);
        throw;
    }
}

void Folder::createInner(const std::string& name) const {
    if (::mkdirat(opened_.descriptor(), name.c_str(), kFolderMode) != 0) {
        throw FileError(opened_.name(), "could not be changed", errno);
    }
}

void Folder::move(const std::string& name, const Folder& into) const {
    if (::renameat(opened_.descriptor(), name.c_str(), into.opened_.descriptor(), name.c_str()) != 0) {
        throw FileError(into.pathOf(name), "could not be replaced", errno);
    }
}

void Folder::rename(const std::string& from, const std::string& to,
                    const std::filesystem::path& knownAs) const {
    if (::renameat(opened_.descriptor(), from.c_str(), opened_.descriptor(), to.c_str()) != 0) {
        throw FileError(knownAs, "could not be replaced", errno);
    }
}

void Folder::remove(const std::string& name) const {
    if (::unlinkat(opened_.descriptor(), name.c_str(), 0) != 0) {
        throw FileError(pathOf(name), "could not be removed", errno);
    }
}

void Folder::removeInner(const std::string& name) const {
    if (::unlinkat(opened_.descriptor(), name.c_str(), AT_REMOVEDIR) != 0) {
        throw FileError(pathOf(name), "could not be removed", errno);
    }
}

bool Folder::lock(Purpose purpose) const {
    const int descriptor = opened_.descriptor();
    if (purpose == Purpose::reading) {
        return tryLock(descriptor, LOCK_SH);
    }
    for (int tries = 0; tries < kMostTries; ++tries) {
        if (tryLock(descriptor, LOCK_EX)) {
            return true;
        }
        // Readers share their lock, a writer does not.
        if (!tryLock(descriptor, LOCK_SH)) {
            return false;
        }
        unlock();
        std::this_thread::sleep_for(kPause);
    }
    return false;
}

void Folder::unlock() const {
    ::flock(opened_.descriptor(), LOCK_UN);
}

}  // namespace files
