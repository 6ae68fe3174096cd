#pragma once

// Files that are there whole or not at all.

#include <cstdint>
#include <filesystem>
#include <span>

namespace files {

// What a path leads to in the end, past every link, whether anything is there or not. Throws FileError when
// it leads nowhere.
[[nodiscard]] std::filesystem::path behindLinks(std::filesystem::path path);

// Whether two names lead to one file, or would once it is there.
[[nodiscard]] bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

// Puts a file into the place of an ordinary file, whose mode and owner it takes over, or of none. Throws
// FileError when that cannot be done; what was there is then as it was. It is not to replace the file that it
// was made from, if that is named.
void writeOutputFile(const std::filesystem::path& path, std::span<const uint8_t> content,
                     const std::filesystem::path& madeFrom = {});

}  // namespace files
