#include "linux/pci/ReadyDevice.h"

#include <utility>

#include "linux/pci/base/Refusals.h"

namespace pci {
namespace {

// A driver that is loaded now would take the device, unless only one of this name may.
constexpr char kOverride[] = "driver_override";
constexpr char kReservation[] = "vupdater\n";
// A device that sleeps answers every read with ones.
constexpr char kPower[] = "power/control";
constexpr char kEnable[] = "enable";

}  // namespace

ReadyDevice::ReadyDevice(PciDevice device)
    : device_(std::move(device)),
      isReserved_(reserve()),
      isWoken_(replace(kPower, "auto\n", "on\n")),
      earlierCommand_(device_.command()),
      isEnabled_(replace(kEnable, "0\n", "1\n")),
      failure_(prepare()) {}

bool ReadyDevice::replace(const char* attribute, const char* text, const char* replacement) const {
    return device_.attributes().text(attribute) == text &&
           device_.attributes().writeText(attribute, replacement);
}

bool ReadyDevice::reserve() const {
    // A program that was killed has left its own behind.
    return replace(kOverride, "(null)\n", kReservation) || replace(kOverride, kReservation, kReservation);
}

std::string ReadyDevice::prepare() {
    if (!earlierCommand_) {
        return refusals::kGone;
    }
    if (!device_.clearInCommand(PciDevice::kBusMastering)) {
        return refusals::kBusMastering;
    }
    // The kernel leaves decoding alone if the device counts as enabled already.
    return device_.setInCommand(PciDevice::kMemoryDecoding) ? "" : refusals::kMemoryDecoding;
}

// Failures are passed over: the device may have gone.
ReadyDevice::~ReadyDevice() {
    const Attributes& attributes = device_.attributes();
    if (isEnabled_) {
        static_cast<void>(attributes.writeText(kEnable, "0\n"));
    }
    if (earlierCommand_) {
        // Enabling has also switched on what the kernel wants for a driver.
        device_.restoreCommand(static_cast<uint16_t>(*earlierCommand_ & ~PciDevice::kBusMastering));
    }
    if (isWoken_) {
        static_cast<void>(attributes.writeText(kPower, "auto\n"));
    }
    if (isReserved_) {
        static_cast<void>(attributes.writeText(kOverride, "\n"));
    }
}

}  // namespace pci
