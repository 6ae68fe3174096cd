#pragma once

// The devices on this computer's bus, below the folder in which the kernel describes them.

#include <cstddef>
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

    // The address of another device that has memory in a page of this device's range; empty if what another
    // device has cannot be read.
    std::optional<std::string> neighbour(const std::string& address, const Resource& range) const;

  private:
    bool isThere(const std::string& address) const;

    std::filesystem::path sys_;
};

}  // namespace pci
