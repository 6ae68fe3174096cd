#include "files/GrowingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "files/FileError.h"

namespace files {
namespace {

// An existing file of the kind, or nothing if nothing has the name.
std::optional<OpenFile> openEarlier(const std::filesystem::path& path, const FileKind& kind, int access) {
    try {
        OpenFile file = OpenFile::ordinary(AT_FDCWD, path, access, path);
        std::string beginning(kind.beginning.size(), '\0');
        const ssize_t bytes = ::pread(file.descriptor(), beginning.data(), beginning.size(), 0);
        if (bytes < 0) {
            throw FileError(path, "could not be read", errno);
        }
        if (beginning != kind.beginning) {
            throw FileError(path, "already exists and is not " + std::string(kind.name));
        }
        return file;
    } catch (const FileError& error) {
        if (error.systemError() != ENOENT) {
            throw;
        }
        return std::nullopt;
    }
}

OpenFile begin(const std::filesystem::path& path, const FileKind& kind) {
    if (auto earlier = openEarlier(path, kind, O_RDWR)) {
        if (::ftruncate(earlier->descriptor(), 0) != 0) {
            throw FileError(path, "could not be emptied", errno);
        }
        return std::move(*earlier);
    }
    return {AT_FDCWD, path, O_WRONLY | O_CREAT | O_EXCL, path, "could not be created"};
}

}  // namespace

void requireReplaceable(const std::filesystem::path& path, const FileKind& kind) {
    (void)openEarlier(path, kind, O_RDONLY);
}

GrowingFile::GrowingFile(const std::filesystem::path& path, const FileKind& kind)
    : file_(begin(path, kind)) {}

void GrowingFile::append(std::string_view piece) {
    if (!failure_.empty()) {
        return;
    }
    try {
        file_.write(bytes_, {reinterpret_cast<const uint8_t*>(piece.data()), piece.size()});
        bytes_ += piece.size();
    } catch (const FileError& error) {
        failure_ = error.what();
        if (::ftruncate(file_.descriptor(), static_cast<off_t>(bytes_)) != 0) {
            failure_ += " Its last line is incomplete.";
        }
    }
}

}  // namespace files
