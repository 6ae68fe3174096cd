#pragma once

// A device on the bus, as the kernel describes it in its folder.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "linux/pci/Attributes.h"
#include "linux/pci/CardRules.h"

namespace pci {

// One line of the file `resource`: addresses in the computer's memory, the last one included, and the
// kernel's flags. All zeros for a base address register that the device does not have.
struct Resource {
    uint64_t first = 0;
    uint64_t last = 0;
    uint64_t flags = 0;

    // Whether the computer has given it a place in its memory.
    bool isPlacedMemory() const;
    bool isMemory() const;
    // Only of memory.
    uint64_t bytes() const { return last - first + 1; }
    bool operator==(const Resource&) const = default;
};

// Six base address registers and the expansion ROM. What follows in the file is no register of the device: a
// bridge's windows, and ranges of virtual functions, which have pages of their own.
constexpr std::size_t kBars = 6;
using Resources = std::array<Resource, kBars + 1>;

// The device's resources as the file lists them; nothing if the text has another form.
std::optional<Resources> parseResources(std::string_view text);

// Whether a text has the form of a device's address, such as 0000:05:01.0.
bool isAddress(std::string_view text);

// Every call asks the kernel again, since a device can change or go at any time.
class PciDevice {
  public:
    PciDevice(std::string address, Attributes attributes)
        : address_(std::move(address)), attributes_(std::move(attributes)) {}

    const std::string& address() const { return address_; }
    const Attributes& attributes() const { return attributes_; }

    // The numbers of the device, those of the board that it is on, and its memory and ports. Nothing if the
    // device has gone or its description cannot be understood.
    std::optional<Identifiers> identifiers() const;
    std::optional<Identifiers> subsystem() const;
    std::optional<Resources> resources() const;

    // Whether it leads to other devices, which could not reach the computer's memory without its bus
    // mastering.
    bool isBridge() const;

    // The name of the driver that has the device, as plainText(); nothing if none has.
    std::optional<std::string> driver() const;

    // Bits of the command register: the device answers accesses to its memory; it makes accesses of its own
    // to the computer's.
    static constexpr uint16_t kMemoryDecoding = 0x0002;
    static constexpr uint16_t kBusMastering = 0x0004;
    // The command register of the device's configuration; nothing if the device does not answer.
    std::optional<uint16_t> command() const;
    // Clears or sets one bit and reads it back; false if the bit did not change as wanted.
    [[nodiscard]] bool clearInCommand(uint16_t bit) const { return changeCommand(bit, 0); }
    [[nodiscard]] bool setInCommand(uint16_t bit) const { return changeCommand(bit, bit); }
    // Restores an earlier value, if the device is still there.
    void restoreCommand(uint16_t command) const { static_cast<void>(writeCommand(command)); }

    // Whether the device has been put to sleep, and so need not answer until somebody wakes it.
    bool isAsleep() const { return attributes_.text("power/runtime_status") == "suspended\n"; }

    // Whether the kernel has a file for the memory of a base address register.
    bool hasBar(std::size_t bar) const { return attributes_.has(fileOfBar(bar)); }
    // Opens the memory of a base address register for mapping. Throws files::FileError.
    [[nodiscard]] files::OpenFile openBar(std::size_t bar) const {
        return attributes_.openForMapping(fileOfBar(bar));
    }

  private:
    static std::string fileOfBar(std::size_t bar) { return "resource" + std::to_string(bar); }
    [[nodiscard]] bool changeCommand(uint16_t bit, uint16_t wanted) const;
    [[nodiscard]] bool writeCommand(uint16_t command) const;

    std::string address_;
    Attributes attributes_;
};

}  // namespace pci
