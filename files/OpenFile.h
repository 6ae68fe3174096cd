#pragma once

// An open file or folder. It is reached by its descriptor, whatever happens to its name. Failures are
// FileError.

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <utility>
#include <vector>

namespace files {

// Far more than any image, listing or machine has. The limit stops endless input, such as from a device.
constexpr std::size_t kMostFileBytes = std::size_t{256} << 20;

class OpenFile {
  public:
    // Opens `name` in the folder whose descriptor is `folder` (AT_FDCWD for the current one), with the flags
    // of open(2). Messages call it `knownAs`; if it cannot be opened, the message is `failure`.
    OpenFile(int folder, const std::filesystem::path& name, int flags, std::filesystem::path knownAs,
             const char* failure = "could not be opened");
    // The same, but refuses everything except an ordinary file, without following links or waiting for pipes.
    static OpenFile ordinary(int folder, const std::filesystem::path& name, int flags,
                             const std::filesystem::path& knownAs);
    // Takes ownership of a descriptor that is already open.
    OpenFile(int descriptor, std::filesystem::path knownAs)
        : name_(std::move(knownAs)), descriptor_(descriptor) {}
    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&&) = delete;
    ~OpenFile();

    int descriptor() const { return descriptor_; }
    const std::filesystem::path& name() const { return name_; }
    struct stat status() const;

    // The whole content. A file of more than kMostFileBytes is a failure.
    std::vector<uint8_t> read() const;
    // After a failure, some of the bytes may have been written.
    void write(std::size_t offset, std::span<const uint8_t> bytes) const;
    // Returns when the content is on the disk.
    void flush() const;

  private:
    std::filesystem::path name_;
    int descriptor_;
};

}  // namespace files
