#pragma once

// Why a file or a folder cannot be used: one printable sentence that begins with its name, as the user knows
// it, and a colon. What failed is left as it was, unless the function that throws says otherwise.

#include <filesystem>
#include <stdexcept>
#include <string>

namespace files {

class FileError : public std::runtime_error {
  public:
    // "NAME: WHAT."
    FileError(const std::filesystem::path& name, const std::string& what);
    // "NAME: WHAT (REASON).", where the reason is the system's, such as ENOSPC.
    FileError(const std::filesystem::path& name, const std::string& what, int systemError);

    // The system's reason; 0 for a file that the system would have let through.
    [[nodiscard]] int systemError() const { return systemError_; }

  private:
    int systemError_ = 0;
};

}  // namespace files
