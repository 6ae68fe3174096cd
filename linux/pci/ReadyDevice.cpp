#include "linux/pci/ReadyDevice.h"

#include <iomanip>
#include <sstream>
#include <utility>

#include "linux/pci/base/Refusals.h"

namespace pci {
namespace {

// A driver that is loaded now would take the device, unless only a driver of a certain name may. The name is
// a note, which no driver is called: the program's name, then the command register and two attributes as they
// were before, such as "vupdater 0140 0 auto".
constexpr char kOverride[] = "driver_override";
constexpr char kNoOverride[] = "(null)\n";
constexpr char kNoteBegin[] = "vupdater";
// A device that sleeps answers every read with ones.
constexpr char kPower[] = "power/control";
constexpr char kMightSleep[] = "auto";
constexpr char kEnable[] = "enable";
constexpr char kNotEnabled[] = "0";

std::string line(const char* text) {
    return std::string(text) + '\n';
}

}  // namespace

ReadyDevice::ReadyDevice(PciDevice device)
    : device_(std::move(device)), before_(wakeAndLook()), isReserved_(reserve()), refusal_(prepare()) {}

bool ReadyDevice::isLeftBehind(const PciDevice& device) {
    return noted(device).has_value();
}

std::optional<std::string> ReadyDevice::reservedFor(const PciDevice& device) {
    const std::string text = device.attributes().text(kOverride).value_or("");
    const std::string name = text.substr(0, text.find('\n'));
    if (name.empty() || text == kNoOverride || isLeftBehind(device)) {
        return std::nullopt;
    }
    return plainText(name);
}

std::optional<ReadyDevice::Before> ReadyDevice::noted(const PciDevice& device) {
    std::istringstream note(device.attributes().text(kOverride).value_or(""));
    std::string begin;
    uint16_t command = 0;
    std::string enable;
    std::string power;
    note >> begin >> std::hex >> command >> enable >> power;
    if (!note || begin != kNoteBegin) {
        return std::nullopt;
    }
    return Before{
        .command = command, .wasEnabled = enable != kNotEnabled, .mightSleep = power == kMightSleep};
}

ReadyDevice::Before ReadyDevice::wakeAndLook() const {
    const bool isWoken = replace(kPower, line(kMightSleep), "on\n");
    const auto earlier = noted(device_);
    const bool isEnabled = device_.attributes().text(kEnable) != line(kNotEnabled);
    return {.command = earlier ? earlier->command : device_.command(),
            .wasEnabled = isEnabled && (!earlier || earlier->wasEnabled),
            .mightSleep = isWoken || (earlier && earlier->mightSleep)};
}

bool ReadyDevice::replace(const char* attribute, const std::string& text,
                          const std::string& replacement) const {
    return device_.attributes().text(attribute) == text &&
           device_.attributes().writeText(attribute, replacement);
}

bool ReadyDevice::reserve() const {
    if (!before_.command || reservedFor(device_)) {
        return false;
    }
    std::ostringstream note;
    note << kNoteBegin << ' ' << std::hex << std::setfill('0') << std::setw(4) << *before_.command << ' '
         << (before_.wasEnabled ? "1" : kNotEnabled) << ' ' << (before_.mightSleep ? kMightSleep : "on")
         << '\n';
    return device_.attributes().writeText(kOverride, note.str());
}

std::string ReadyDevice::stayAwake() {
    before_.mightSleep = false;
    static_cast<void>(replace(kPower, line(kMightSleep), "on\n"));
    if (!before_.command) {
        return "";  // left to a driver
    }
    // The rest is worth having even if drivers can no longer be kept away.
    const bool isReservedAgain = reserve();
    std::string refusal = prepare();
    return refusal.empty() && !isReservedAgain ? refusals::kNotReserved : refusal;
}

std::string ReadyDevice::prepare() {
    // One may have come before the device was reserved.
    if (const auto driver = device_.driver()) {
        leaveAsItIs();
        return refusals::driver(*driver);
    }
    if (!device_.command()) {
        return refusals::kGone;
    }
    if (!isReserved_) {
        leaveAsItIs();
        return refusals::kNotReserved;
    }
    // What counts is memory decoding, which is checked below.
    static_cast<void>(replace(kEnable, line(kNotEnabled), "1\n"));
    if (!device_.clearInCommand(PciDevice::kBusMastering)) {
        return refusals::kBusMastering;
    }
    // The kernel leaves decoding alone if the device counts as enabled already.
    return device_.setInCommand(PciDevice::kMemoryDecoding) ? "" : refusals::kMemoryDecoding;
}

void ReadyDevice::leaveAsItIs() {
    before_.command.reset();
    before_.wasEnabled = true;
}

// Failures are passed over: the device may have gone.
ReadyDevice::~ReadyDevice() {
    const Attributes& attributes = device_.attributes();
    if (!before_.wasEnabled) {
        static_cast<void>(attributes.writeText(kEnable, line(kNotEnabled)));
    }
    if (before_.command) {
        // Enabling has also switched on what the kernel wants for a driver.
        device_.restoreCommand(static_cast<uint16_t>(*before_.command & ~PciDevice::kBusMastering));
    }
    if (before_.mightSleep) {
        static_cast<void>(attributes.writeText(kPower, line(kMightSleep)));
    }
    if (isReserved_ && isLeftBehind(device_)) {
        static_cast<void>(attributes.writeText(kOverride, "\n"));
    }
}

}  // namespace pci
