#pragma once

// A device whose registers answer, for as long as the object lives: awake, with memory decoding on, bus
// mastering off and out of drivers' reach. Afterwards it is as it was before, except that bus mastering stays
// off.
//
// What has to be undone is noted at the device, for a later program if this one is killed.

#include <cstdint>
#include <optional>
#include <string>

#include "linux/pci/PciDevice.h"

namespace pci {

class ReadyDevice {
  public:
    // Needs a /sys that can be written, and for a device that is not enabled CAP_SYS_ADMIN. If a program that
    // was killed had made the device ready, it will be as it was before that program.
    explicit ReadyDevice(PciDevice device);
    ReadyDevice(const ReadyDevice&) = delete;
    ReadyDevice& operator=(const ReadyDevice&) = delete;
    ~ReadyDevice();

    // Whether a program that was killed has left the device as it made it ready; or one is still at it.
    static bool isLeftBehind(const PciDevice& device);

    // The driver, as plainText(), for which somebody else has set the device aside; nothing if nobody has.
    static std::optional<std::string> reservedFor(const PciDevice& device);

    // Leaves the device awake afterwards, for as long as the computer is on, and makes it ready again if
    // others have changed it: programs that save power let all devices sleep when the mains go. Returns the
    // refusal if a device that was ready cannot be made so again; else it is empty.
    [[nodiscard]] std::string stayAwake();

    // Why the device is not ready, one of pci::refusals; empty if it is.
    const std::string& refusal() const { return refusal_; }
    const PciDevice& device() const { return device_; }

  private:
    // What to put back.
    struct Before {
        std::optional<uint16_t> command;  // nothing if the device did not answer
        bool wasEnabled;
        bool mightSleep;
    };

    static std::optional<Before> noted(const PciDevice& device);
    // Wakes the device, so that it answers.
    Before wakeAndLook() const;
    // Keeps drivers away with a note of what to put back. Returns whether it could: somebody else's override
    // stays.
    [[nodiscard]] bool reserve() const;
    // Replaces an attribute's text if it has this one. Returns whether it did.
    [[nodiscard]] bool replace(const char* attribute, const std::string& text,
                               const std::string& replacement) const;
    // Returns the refusal; empty if the device is ready.
    [[nodiscard]] std::string prepare();
    // Puts nothing back afterwards, except that the device may sleep: a driver may change the rest at any
    // time.
    void leaveAsItIs();

    PciDevice device_;
    Before before_;
    bool isReserved_;
    std::string refusal_;
};

}  // namespace pci
