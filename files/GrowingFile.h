#pragma once

// A file that grows piece by piece, each of which is in the file at once.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "files/OpenFile.h"

namespace files {

// What such a file is, in words that follow "is not", and how each of its kind begins.
struct FileKind {
    std::string_view name;
    std::string_view beginning;
};

// Throws FileError unless the file can begin there: nothing is there, or an earlier file of its kind.
void requireReplaceable(const std::filesystem::path& path, const FileKind& kind);

class GrowingFile {
  public:
    // Begins it anew, in the place of nothing or of an earlier one of its kind. Throws FileError when
    // something else is there, links included, or when it cannot be created.
    GrowingFile(const std::filesystem::path& path, const FileKind& kind);

    // A piece that the system does not take leaves nothing of it behind, and later ones are dropped.
    void append(std::string_view piece);
    // What went wrong, as a FileError says it; empty if nothing did.
    [[nodiscard]] const std::string& failure() const { return failure_; }

  private:
    OpenFile file_;
    std::size_t bytes_ = 0;
    std::string failure_;
};

}  // namespace files
