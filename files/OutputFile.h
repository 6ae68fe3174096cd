#pragma once

// Files that are written completely or not at all.

#include <cstdint>
#include <filesystem>
#include <span>

namespace files {

// The path with all links at its end followed, whether or not the file exists. Throws FileError if the links
// lead in a circle.
std::filesystem::path behindLinks(std::filesystem::path path);

// Whether two names lead to the same file, or are the same name.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

// Creates a file, or replaces an ordinary file and takes over its mode and owner. Throws FileError, and
// leaves everything as it was, if that is not possible or would replace the file named `madeFrom`.
void writeOutputFile(const std::filesystem::path& path, std::span<const uint8_t> content,
                     const std::filesystem::path& madeFrom = {});

}  // namespace files
