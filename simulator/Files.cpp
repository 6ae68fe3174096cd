#include "simulator/Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>
#include <utility>

#include "simulator/MachineError.h"

namespace simulator {
namespace {

constexpr std::size_t kPieceBytes = 65536;

[[noreturn]] void fail(const std::filesystem::path& path, const std::string& what) {
    const std::string reason = std::generic_category().message(errno);
    throw MachineError(path.string() + ": " + what + " (" + reason + ").");
}

int openFile(const std::filesystem::path& path, int flags, const char* whatFails) {
    const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, 0666);
    if (descriptor < 0)
        fail(path, whatFails);
    return descriptor;
}

void writeAt(const std::filesystem::path& path, int descriptor, std::size_t offset,
             std::span<const uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            fail(path, "could not be written");
        offset += static_cast<std::size_t>(written);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

class File {
  public:
    File(const std::filesystem::path& path, int flags, const char* whatFails)
        : File(path, openFile(path, flags, whatFails)) {}
    File(const std::filesystem::path& path, int descriptor) : path_(path), descriptor_(descriptor) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { ::close(descriptor_); }

    void write(std::size_t offset, std::span<const uint8_t> bytes) const {
        writeAt(path_, descriptor_, offset, bytes);
    }

    [[nodiscard]] std::vector<uint8_t> read() const {
        // Its size is a hint only: a pipe has none, and a file may grow meanwhile.
        struct stat status {};
        const bool hasSize = ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
        std::vector<uint8_t> content(
            hasSize ? std::min(static_cast<std::size_t>(status.st_size), kMostFileBytes) + 1 : kPieceBytes);
        std::size_t filled = 0;
        for (;;) {
            if (filled == content.size())
                content.resize(2 * filled);
            const ssize_t got = ::read(descriptor_, content.data() + filled, content.size() - filled);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                fail(path_, "could not be read");
            if (got == 0)
                break;
            filled += static_cast<std::size_t>(got);
            if (filled > kMostFileBytes)
                throw MachineError(path_.string() + ": is longer than " +
                                   std::to_string(kMostFileBytes >> 20) + " megabytes.");
        }
        content.resize(filled);
        return content;
    }

    void flush() const {
        if (::fsync(descriptor_) != 0)
            fail(path_, "could not be written");
    }

  private:
    std::filesystem::path path_;
    int descriptor_;
};

// A file beside the one whose place it is to take, under a name that nobody else has. It goes if it does not
// get there.
class UnfinishedFile {
  public:
    explicit UnfinishedFile(const std::filesystem::path& goal)
        : name_(goal.string() + ".XXXXXX"), descriptor_(::mkstemp(name_.data())) {
        if (descriptor_ < 0)
            fail(goal, "could not be made");
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    ~UnfinishedFile() {
        if (!isTaken_)
            ::unlink(name_.c_str());
    }

    void fill(std::span<const uint8_t> content) const {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        ::fchmod(descriptor_, 0666 & ~mask);
        const File file(name_, descriptor_);
        file.write(0, content);
        file.flush();
    }

    void take(const std::filesystem::path& goal) {
        if (::rename(name_.c_str(), goal.c_str()) != 0)
            fail(goal, "could not be replaced");
        isTaken_ = true;
    }

  private:
    std::string name_;
    int descriptor_;
    bool isTaken_ = false;
};

}  // namespace

std::vector<uint8_t> readFile(const std::filesystem::path& path) {
    return File(path, O_RDONLY, "could not be opened").read();
}

void replaceFile(const std::filesystem::path& path, std::span<const uint8_t> content) {
    UnfinishedFile fresh(path);
    fresh.fill(content);
    fresh.take(path);
}

void writeIntoFile(const std::filesystem::path& path, std::size_t offset, std::span<const uint8_t> bytes) {
    File(path, O_WRONLY, "could not be opened").write(offset, bytes);
}

bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
    std::error_code notBothThere;
    return one == other || std::filesystem::equivalent(one, other, notBothThere);
}

void removeFile(const std::filesystem::path& path) {
    if (::unlink(path.c_str()) != 0)
        fail(path, "could not be removed");
}

GrowingFile::GrowingFile(std::filesystem::path path)
    : path_(std::move(path)),
      descriptor_(openFile(path_, O_WRONLY | O_CREAT | O_TRUNC, "could not be made")) {}

GrowingFile::~GrowingFile() {
    ::close(descriptor_);
}

void GrowingFile::append(std::string_view piece) {
    if (!failure_.empty())
        return;
    try {
        writeAt(path_, descriptor_, bytes_, {reinterpret_cast<const uint8_t*>(piece.data()), piece.size()});
        bytes_ += piece.size();
    } catch (const MachineError& error) {
        failure_ = error.what();
        (void)::ftruncate(descriptor_, static_cast<off_t>(bytes_));
    }
}

FolderLock::FolderLock(const std::filesystem::path& folder)
    : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor_ < 0)
        fail(folder, "there is no simulated machine here");
    if (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
        ::close(descriptor_);
        throw MachineError(folder.string() + ": the simulated machine is in use by another program.");
    }
}

FolderLock::~FolderLock() {
    ::close(descriptor_);
}

}  // namespace simulator
