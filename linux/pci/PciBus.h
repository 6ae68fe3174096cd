#pragma once

// The devices on this computer's bus, below the folder in which the kernel describes them.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "linux/pci/PciDevice.h"

namespace pci {

class PciBus {
  public:
    explicit PciBus(std::filesystem::path sys) : sys_(std::move(sys)) {}

    // The addresses of all devices, in their order.
    std::vector<std::string> addresses() const;
    // Nothing if there is none with this address.
    std::optional<PciDevice> device(const std::string& address) const;

    // Where a device is, in words for a person: its slot if the computer's firmware names one, else its
    // address.
    std::string location(const std::string& address) const;

    // Whether the kernel is locked down, so that no program may touch a device's registers.
    bool isLockedDown() const;

    struct Neighbour {
        std::string address;
        bool isKnown;  // false if what it uses cannot be read
    };
    // A device, other than the one with this address, of which a memory range lies in a page of this one, or
    // may lie there.
    std::optional<Neighbour> neighbour(const std::string& address, const Resource& range) const;

  private:
    std::filesystem::path sys_;
};

// Of this computer's memory.
uint64_t pageBytes();

}  // namespace pci
