#pragma once

// Reading a whole file that the user names.

#include <cstdint>
#include <filesystem>
#include <vector>

namespace files {

// The content of a file or pipe. Throws FileError if it cannot be read or has more than kMostFileBytes.
std::vector<uint8_t> readFile(const std::filesystem::path& path);

}  // namespace files
