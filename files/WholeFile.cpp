#include "files/WholeFile.h"

#include <fcntl.h>

#include "files/OpenFile.h"

namespace files {

std::vector<uint8_t> readFile(const std::filesystem::path& path) {
    return OpenFile(AT_FDCWD, path, O_RDONLY, path).read();
}

}  // namespace files
