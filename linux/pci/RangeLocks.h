#pragma once

// Tells whether a program has a device's registers open or mapped.
//
// A program keeps its mapping, whatever becomes of its connection to the bus or of the agent. So every range
// that is handed out carries a lock on its file, which the kernel keeps until the last mapping and descriptor
// are gone. With it an agent notices programs that hang or outlive the agent that gave them the card. A
// program could deceive it by unlocking the file, but only one that an administrator has allowed to use the
// cards.

#include <vector>

#include "files/OpenFile.h"
#include "linux/pci/PciDevice.h"

namespace pci {

// Locks the file of a range before it is handed out. Throws files::FileError.
void lockRange(const files::OpenFile& file);

class RangeLocks {
  public:
    // Opens the files of the device's memory ranges once more, which changes nothing. Throws files::UserError
    // if one cannot be opened.
    explicit RangeLocks(const PciDevice& device);

    // Whether one of the files is locked.
    bool isAnyHeld() const;

  private:
    std::vector<files::OpenFile> files_;
};

}  // namespace pci
