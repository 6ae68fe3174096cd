#pragma once

// Whole files at once. Failures throw MachineError with the file's name and the system's reason.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace simulator {

[[nodiscard]] std::vector<uint8_t> readFile(const std::filesystem::path& path);

// Puts a file into the place of whatever is there; whoever opens it sees the old content or the new, no
// mixture.
void replaceFile(const std::filesystem::path& path, std::span<const uint8_t> content);

// Changes some bytes of a file that is there.
void writeIntoFile(const std::filesystem::path& path, std::size_t offset, std::span<const uint8_t> bytes);

void removeFile(const std::filesystem::path& path);

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
