#include "files/FileError.h"

#include <system_error>

#include "files/PrintableText.h"

namespace files {

FileError::FileError(const std::filesystem::path& name, const std::string& what)
    : std::runtime_error(printable(name.string()) + ": " + what + '.') {}

FileError::FileError(const std::filesystem::path& name, const std::string& what, int systemError)
    : std::runtime_error(printable(name.string()) + ": " + what + " (" +
                         std::generic_category().message(systemError) + ")."),
      systemError_(systemError) {}

}  // namespace files
