#pragma once

// Files that are there whole or not at all.

#include <cstdint>
#include <filesystem>
#include <span>

namespace tools {

// What a path leads to in the end, past every link, whether anything is there or not. Throws
// std::runtime_error when it leads nowhere.
[[nodiscard]] std::filesystem::path behindLinks(std::filesystem::path path);

// Puts a file into the place of an ordinary file or of none. Throws std::runtime_error, saying which file
// failed and how, when that cannot be done; what was there is then as it was.
// It is not to replace the file that it was made from, if that is named.
void writeOutputFile(const std::filesystem::path& path, std::span<const uint8_t> content,
                     const std::filesystem::path& madeFrom = {});

}  // namespace tools
