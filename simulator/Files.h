#pragma once

// Whole files at once. Failures throw MachineError with the file's name and the system's reason.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

// Far more than any image, listing or machine has; a device without an end has more.
constexpr std::size_t kMostFileBytes = std::size_t{256} << 20;

// A file of more than kMostFileBytes is a failure, too.
[[nodiscard]] std::vector<uint8_t> readFile(const std::filesystem::path& path);

// Puts a file into the place of whatever is there; whoever opens it sees the old content or the new, no
// mixture. A failure leaves what was there, and nothing beside it.
void replaceFile(const std::filesystem::path& path, std::span<const uint8_t> content);

// Changes some bytes of a file that is there.
void writeIntoFile(const std::filesystem::path& path, std::size_t offset, std::span<const uint8_t> bytes);

// Whether two names lead to one file, or would once it is there.
[[nodiscard]] bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

void removeFile(const std::filesystem::path& path);

// A file that grows piece by piece, each of which is in the file at once.
class GrowingFile {
  public:
    // Begins it anew, in the place of whatever is there.
    explicit GrowingFile(std::filesystem::path path);
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;
    ~GrowingFile();

    // A piece that the system does not take leaves nothing of it behind, and later ones are dropped.
    void append(std::string_view piece);
    // What went wrong, as a MachineError says it; empty if nothing did.
    [[nodiscard]] const std::string& failure() const { return failure_; }

  private:
    std::filesystem::path path_;
    int descriptor_;
    std::size_t bytes_ = 0;
    std::string failure_;
};

// Keeps every other process out of a folder for as long as it lives; throws when one is in already.
class FolderLock {
  public:
    explicit FolderLock(const std::filesystem::path& folder);
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

  private:
    int descriptor_;
};

}  // namespace simulator
