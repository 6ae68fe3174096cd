#pragma once

// Why a file or a folder cannot be used.

#include <filesystem>
#include <string>

#include "files/UserError.h"

namespace files {

class FileError : public UserError {
  public:
    // "NAME: WHAT.", with the name as the user knows it.
    FileError(const std::filesystem::path& name, const std::string& what);
    // "NAME: WHAT (REASON).", where the reason is the system's, such as ENOSPC.
    FileError(const std::filesystem::path& name, const std::string& what, int systemError);

    // The system's reason, or 0 if the system would have allowed it.
    int systemError() const { return systemError_; }

  private:
    int systemError_ = 0;
};

}  // namespace files
