#include "linux/pci/RangeLocks.h"

#include <sys/file.h>

#include <algorithm>
#include <cerrno>

#include "files/FileError.h"
#include "linux/pci/base/Refusals.h"

namespace pci {

void lockRange(const files::OpenFile& file) {
    // Shared, because a program may open a range more than once.
    if (flock(file.descriptor(), LOCK_SH | LOCK_NB) != 0) {
        throw files::FileError(file.name(), "could not be locked", errno);
    }
}

RangeLocks::RangeLocks(const PciDevice& device) {
    const auto resources = device.resources();
    if (!resources) {
        throw files::UserError(refusals::kGone);
    }
    for (std::size_t bar = 0; bar < kBars; ++bar) {
        if ((*resources)[bar].isPlacedMemory()) {
            files_.push_back(device.openBar(bar));
        }
    }
}

bool RangeLocks::isAnyHeld() const {
    return std::ranges::any_of(files_, [](const files::OpenFile& file) {
        const bool isLocked = flock(file.descriptor(), LOCK_EX | LOCK_NB) != 0;
        flock(file.descriptor(), LOCK_UN);
        return isLocked;
    });
}

}  // namespace pci
