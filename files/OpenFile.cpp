#include "files/OpenFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

#include "files/FileError.h"

namespace files {
namespace {

constexpr std::size_t kPieceBytes = 65536;
constexpr mode_t kMode = 0666;  // less the process's mask

}  // namespace

OpenFile::OpenFile(int folder, const std::filesystem::path& name, int flags, std::filesystem::path knownAs,
                   const char* failure)
    : name_(std::move(knownAs)), descriptor_(::openat(folder, name.c_str(), flags | O_CLOEXEC, kMode)) {
    if (descriptor_ < 0) {
        throw FileError(name_, failure, errno);
    }
}

OpenFile OpenFile::ordinary(int folder, const std::filesystem::path& name, int flags,
                            const std::filesystem::path& knownAs) {
    try {
        OpenFile file(folder, name, flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, knownAs);
        if (S_ISREG(file.status().st_mode)) {
            return file;
        }
    } catch (const FileError& error) {
        // Links, pipes without a reader, sockets and folders cannot be opened at all.
        const int reason = error.systemError();
        if (reason != ELOOP && reason != ENXIO && reason != EISDIR) {
            throw;
        }
    }
    throw FileError(knownAs, "is not an ordinary file");
}

OpenFile::OpenFile(OpenFile&& other) noexcept
    : name_(std::move(other.name_)), descriptor_(std::exchange(other.descriptor_, -1)) {}

OpenFile::~OpenFile() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

struct stat OpenFile::status() const {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0) {
        throw FileError(name_, "could not be looked at", errno);
    }
    return status;
}

std::vector<uint8_t> OpenFile::read() const {
    // The size is only a hint: a pipe has none, and a file may grow.
    const struct stat now = status();
    std::vector<uint8_t> content(S_ISREG(now.st_mode)
                                     ? std::min(static_cast<std::size_t>(now.st_size), kMostFileBytes) + 1
                                     : kPieceBytes);
    std::size_t filled = 0;
    for (;;) {
        if (filled == content.size()) {
            content.resize(2 * filled);
        }
        const ssize_t got = ::read(descriptor_, content.data() + filled, content.size() - filled);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            throw FileError(name_, "could not be read", errno);
        }
        if (got == 0) {
            break;
        }
        filled += static_cast<std::size_t>(got);
        if (filled > kMostFileBytes) {
            throw FileError(name_, "is longer than " + std::to_string(kMostFileBytes >> 20) + " megabytes");
        }
    }
    content.resize(filled);
    return content;
}

void OpenFile::write(std::size_t offset, std::span<const uint8_t> bytes) const {
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            throw FileError(name_, "could not be written", errno);
        }
        offset += static_cast<std::size_t>(written);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

void OpenFile::flush() const {
    if (::fsync(descriptor_) != 0) {
        throw FileError(name_, "could not be written", errno);
    }
}

}  // namespace files
