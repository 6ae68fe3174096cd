#pragma once

// A device whose registers answer, for as long as the object lives: awake, with memory decoding on, bus
// mastering off and out of drivers' reach. Afterwards it is as it was before, except that bus mastering stays
// off.

#include <cstdint>
#include <optional>
#include <string>

#include "linux/pci/PciDevice.h"

namespace pci {

class ReadyDevice {
  public:
    // Needs a /sys that can be written, and for a device that is not enabled CAP_SYS_ADMIN.
    explicit ReadyDevice(PciDevice device);
    ReadyDevice(const ReadyDevice&) = delete;
    ReadyDevice& operator=(const ReadyDevice&) = delete;
    ~ReadyDevice();

    // Leaves the device awake afterwards, for as long as the computer is on.
    void stayAwake() { isWoken_ = false; }

    // Why the device is not ready; empty if it is.
    const std::string& failure() const { return failure_; }
    const PciDevice& device() const { return device_; }

  private:
    // Replaces an attribute's text if it has this one. Whether it did.
    bool replace(const char* attribute, const char* text, const char* replacement) const;
    bool reserve() const;
    std::string prepare();

    PciDevice device_;
    bool isReserved_;
    bool isWoken_;
    std::optional<uint16_t> earlierCommand_;
    bool isEnabled_;
    std::string failure_;
};

}  // namespace pci
