#pragma once

// A file that is written piece by piece; each piece is in the file as soon as it is appended.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "files/OpenFile.h"

namespace files {

struct FileKind {
    std::string_view name;       // follows "is not", such as "a recording"
    std::string_view beginning;  // the bytes with which every file of the kind begins
};

// Throws FileError if the name is taken by anything but an earlier file of the kind.
void requireReplaceable(const std::filesystem::path& path, const FileKind& kind);

class GrowingFile {
  public:
    // Creates the file, or empties an earlier one of the kind. Throws FileError if something else, such as a
    // link, has the name, or if the file cannot be created.
    GrowingFile(const std::filesystem::path& path, const FileKind& kind);

    // If a piece cannot be written, the file ends with the piece before it, and later pieces are dropped.
    void append(std::string_view piece);
    // Why a piece could not be written, in FileError's words; empty if all were.
    const std::string& failure() const { return failure_; }

  private:
    OpenFile file_;
    std::size_t bytes_ = 0;
    std::string failure_;
};

}  // namespace files
