#pragma once

// The files of a machine's folder, and their protection from other programs.

#include <filesystem>

namespace simulator {

// The file that makes a folder a machine's, and the end of the names of its PROMs' files.
constexpr const char* kMachineFile = "machine.json";
constexpr const char* kPromExtension = ".prom";

// Throws files::FileError if writing to the file would harm a simulated machine: in a machine's folder, its
// machine.json, an existing .prom file, and the folders of a save under way.
void requireOutsideMachines(const std::filesystem::path& file);

}  // namespace simulator
