#include "linux/pci/ReadyDevice.h"

#include <utility>

#include "linux/pci/Refusals.h"

namespace pci {
namespace {

constexpr char kPower[] = "power/control";
constexpr char kEnable[] = "enable";

}  // namespace

ReadyDevice::ReadyDevice(PciDevice device) : device_(std::move(device)), failure_(prepare()) {}

std::string ReadyDevice::prepare() {
    const Attributes& attributes = device_.attributes();
    // A device that sleeps answers every read with ones.
    if (attributes.text(kPower) == "auto\n") {
        isWoken_ = attributes.write(kPower, "on");
    }
    if (!device_.clearInCommand(PciDevice::kBusMastering)) {
        return refusals::kBusMastering;
    }
    const auto command = device_.command();
    isDecodingOurs_ = command && (*command & PciDevice::kMemoryDecoding) == 0;
    if (attributes.text(kEnable) == "0\n") {
        isEnabled_ = attributes.write(kEnable, "1");
    }
    // The kernel leaves decoding alone if the device counts as enabled already.
    return device_.setInCommand(PciDevice::kMemoryDecoding) ? "" : refusals::kMemoryDecoding;
}

// Failures are passed over: the device may have gone.
ReadyDevice::~ReadyDevice() {
    const Attributes& attributes = device_.attributes();
    if (isDecodingOurs_) {
        static_cast<void>(device_.clearInCommand(PciDevice::kMemoryDecoding));
    }
    if (isEnabled_) {
        static_cast<void>(attributes.write(kEnable, "0"));
    }
    if (isWoken_) {
        static_cast<void>(attributes.write(kPower, "auto"));
    }
}

}  // namespace pci
