#pragma once

// A device whose registers answer, for as long as the object lives: awake, with memory decoding on and bus
// mastering off. Afterwards it is as it was before, except that bus mastering stays off.

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

    // Why the device is not ready; empty if it is.
    const std::string& failure() const { return failure_; }
    const PciDevice& device() const { return device_; }

  private:
    std::string prepare();

    PciDevice device_;
    bool isWoken_ = false;
    bool isEnabled_ = false;
    bool isDecodingOurs_ = false;
    std::string failure_;
};

}  // namespace pci
