#pragma once

// A file that the user names, all at once.

#include <cstdint>
#include <filesystem>
#include <vector>

namespace files {

// Whatever the name leads to, a pipe included. Throws FileError; a file of more than kMostFileBytes is a
// failure, too.
[[nodiscard]] std::vector<uint8_t> readFile(const std::filesystem::path& path);

}  // namespace files
