#include "files/FileError.h"

#include <system_error>

namespace files {

FileError::FileError(const std::filesystem::path& name, const std::string& what)
    : UserError(name.string() + ": " + what + '.') {}

FileError::FileError(const std::filesystem::path& name, const std::string& what, int systemError)
    : UserError(name.string() + ": " + what + " (" + std::generic_category().message(systemError) + ")."),
      systemError_(systemError) {}

}  // namespace files
