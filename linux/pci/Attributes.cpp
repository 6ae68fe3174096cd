#include "linux/pci/Attributes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include "files/FileError.h"

namespace pci {
namespace {

// The kernel's attributes of text have at most a page.
constexpr std::size_t kMostTextBytes = 4096;
constexpr std::size_t kMostPlainCharacters = 60;

ssize_t readPiece(const files::OpenFile& file, std::size_t offset, std::span<uint8_t> bytes) {
    ssize_t got = 0;
    do {
        got = ::pread(file.descriptor(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
    } while (got < 0 && errno == EINTR);
    return got;
}

std::optional<files::OpenFile> openOrdinary(const files::OpenFile& folder, const std::string& name,
                                            int flags) {
    try {
        return files::OpenFile::ordinary(folder.descriptor(), name, flags, folder.name() / name);
    } catch (const files::FileError&) {
        return std::nullopt;
    }
}

}  // namespace

std::optional<Attributes> Attributes::open(const std::filesystem::path& folder) {
    try {
        return Attributes(files::OpenFile(AT_FDCWD, folder, O_RDONLY | O_DIRECTORY, folder));
    } catch (const files::FileError&) {
        return std::nullopt;
    }
}

// Asks without opening anything, which can fail for reasons of this program's own.
bool Attributes::isStillThere() const {
    struct stat there {};
    if (::stat(folder_.name().c_str(), &there) != 0) {
        return errno != ENOENT && errno != ENOTDIR;
    }
    const struct stat own = folder_.status();
    return own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

bool Attributes::has(const std::string& name) const {
    struct stat status {};
    return ::fstatat(folder_.descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 ||
           errno != ENOENT;
}

std::optional<std::string> Attributes::text(const std::string& name) const {
    const auto file = openOrdinary(folder_, name, O_RDONLY);
    if (!file) {
        return std::nullopt;
    }
    std::array<uint8_t, kMostTextBytes + 1> bytes{};
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = readPiece(*file, filled, std::span(bytes).subspan(filled));
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            return std::string(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(filled));
        }
        filled += static_cast<std::size_t>(got);
    }
    return std::nullopt;
}

std::optional<std::string> Attributes::linkedName(const std::string& name) const {
    std::array<char, PATH_MAX> target{};
    const ssize_t bytes = ::readlinkat(folder_.descriptor(), name.c_str(), target.data(), target.size());
    if (bytes < 0) {
        return errno == ENOENT ? std::nullopt : std::optional<std::string>("");
    }
    const std::string path(target.data(), static_cast<std::size_t>(bytes));
    return path.substr(path.rfind('/') + 1);
}

bool Attributes::writeText(const std::string& name, const std::string& text) const {
    const auto file = openOrdinary(folder_, name, O_WRONLY | O_TRUNC);
    return file && ::write(file->descriptor(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

bool Attributes::readAt(const std::string& name, std::size_t offset, std::span<uint8_t> bytes) const {
    const auto file = openOrdinary(folder_, name, O_RDONLY);
    return file && readPiece(*file, offset, bytes) == static_cast<ssize_t>(bytes.size());
}

bool Attributes::writeAt(const std::string& name, std::size_t offset, std::span<const uint8_t> bytes) const {
    const auto file = openOrdinary(folder_, name, O_WRONLY);
    return file && ::pwrite(file->descriptor(), bytes.data(), bytes.size(), static_cast<off_t>(offset)) ==
                       static_cast<ssize_t>(bytes.size());
}

files::OpenFile Attributes::openForMapping(const std::string& name) const {
    return files::OpenFile::ordinary(folder_.descriptor(), name, O_RDWR | O_SYNC, folder_.name() / name);
}

std::string plainText(const std::string& text) {
    std::string plain = text.substr(0, kMostPlainCharacters);
    std::ranges::replace_if(
        plain, [](char c) { return c < ' ' || c > '~'; }, '?');
    return plain;
}

}  // namespace pci
