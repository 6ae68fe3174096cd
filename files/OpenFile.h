#pragma once

// A file or folder while it is open. It is reached by its descriptor alone, whatever happens to its name.
// Failures are FileError.

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace files {

// Far more than any image, listing or machine has; a device without an end has more.
constexpr std::size_t kMostFileBytes = std::size_t{256} << 20;

class OpenFile {
  public:
    // Opens what `name` leads to from the folder that is open as `folder` (AT_FDCWD: the current one), with
    // flags as open(2) has them. `knownAs` is its name in complaints, of which `failure` is what is said when
    // it does not open.
    OpenFile(int folder, const std::filesystem::path& name, int flags, std::filesystem::path knownAs,
             const char* failure = "could not be opened");
    // The same for an ordinary file and nothing else: no link is followed and no pipe waited for.
    [[nodiscard]] static OpenFile ordinary(int folder, const std::filesystem::path& name, int flags,
                                           const std::filesystem::path& knownAs);
    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&&) = delete;
    ~OpenFile();

    [[nodiscard]] int descriptor() const { return descriptor_; }
    [[nodiscard]] const std::filesystem::path& name() const { return name_; }
    [[nodiscard]] struct stat status() const;

    // From the beginning to the end. A file of more than kMostFileBytes is a failure.
    [[nodiscard]] std::vector<uint8_t> read() const;
    // A failure may leave the first of the bytes written.
    void write(std::size_t offset, std::span<const uint8_t> bytes) const;
    // Returns when the content is on the disk.
    void flush() const;

  private:
    std::filesystem::path name_;
    int descriptor_;
};

}  // namespace files
