#include "linux/pci/base/MemoryRange.h"

#include <unistd.h>

namespace pci {

std::size_t pageBytes() {
    static const auto bytes = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return bytes;
}

}  // namespace pci
