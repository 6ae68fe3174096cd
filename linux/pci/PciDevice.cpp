#include "linux/pci/PciDevice.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace pci {
namespace {

// The kernel's flags of a resource.
constexpr uint64_t kMemory = 0x00000200;
constexpr uint64_t kDisabled = 0x10000000;
constexpr uint64_t kUnset = 0x20000000;

constexpr std::size_t kCommandOffset = 4;
// What a read gives if no device answers.
constexpr uint16_t kNoAnswer = 0xFFFF;

bool isHexadecimalDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

// Takes the text up to a separator, and the separator, off the front; all of it if there is none.
std::string_view take(std::string_view& text, char separator) {
    const std::string_view front = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(front.size() + 1, text.size()));
    return front;
}

// As the kernel writes numbers: 0x and at least one lower-case digit.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    constexpr std::string_view kPrefix = "0x";
    Number number = 0;
    if (!text.starts_with(kPrefix)) {
        return std::nullopt;
    }
    text.remove_prefix(kPrefix.size());
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

std::optional<uint16_t> identifier(const Attributes& attributes, const std::string& name) {
    const auto text = attributes.text(name);
    if (!text || !text->ends_with('\n')) {
        return std::nullopt;
    }
    return parseNumber<uint16_t>(std::string_view(*text).substr(0, text->size() - 1));
}

std::optional<Identifiers> pair(const Attributes& attributes, const std::string& vendor,
                                const std::string& device) {
    const auto first = identifier(attributes, vendor);
    const auto second = identifier(attributes, device);
    if (!first || !second) {
        return std::nullopt;
    }
    return Identifiers{.vendor = *first, .device = *second};
}

std::optional<Resource> parseResource(std::string_view line) {
    const auto first = parseNumber<uint64_t>(take(line, ' '));
    const auto last = parseNumber<uint64_t>(take(line, ' '));
    const auto flags = parseNumber<uint64_t>(line);
    if (!first || !last || !flags || *first > *last) {
        return std::nullopt;
    }
    return Resource{.first = *first, .last = *last, .flags = *flags};
}

}  // namespace

bool Resource::isMemory() const {
    return (flags & kMemory) != 0;
}

bool Resource::isPlacedMemory() const {
    return isMemory() && first != 0 && (flags & (kDisabled | kUnset)) == 0;
}

std::optional<Resources> parseResources(std::string_view text) {
    Resources resources;
    for (Resource& resource : resources) {
        if (text.find('\n') == std::string_view::npos) {
            return std::nullopt;  // cut short
        }
        const auto parsed = parseResource(take(text, '\n'));
        if (!parsed) {
            return std::nullopt;
        }
        resource = *parsed;
    }
    return resources;
}

bool isAddress(std::string_view text) {
    constexpr std::string_view kRest = "xx:xx.x";
    const std::string_view domain = take(text, ':');
    if (domain.size() < 4 || domain.size() > 8) {
        return false;
    }
    const bool isForm = std::ranges::equal(
        text, kRest, [](char c, char form) { return form == 'x' ? isHexadecimalDigit(c) : c == form; });
    return isForm && std::ranges::all_of(domain, isHexadecimalDigit);
}

std::optional<Identifiers> PciDevice::identifiers() const {
    return pair(attributes_, "vendor", "device");
}

std::optional<Identifiers> PciDevice::subsystem() const {
    return pair(attributes_, "subsystem_vendor", "subsystem_device");
}

std::optional<Resources> PciDevice::resources() const {
    const auto text = attributes_.text("resource");
    return text ? parseResources(*text) : std::nullopt;
}

bool PciDevice::isBridge() const {
    // PCI to PCI, CardBus, and semi-transparent PCI to PCI. Other kinds of bridges have no bus behind them.
    constexpr std::array<std::string_view, 3> kClasses{"0x0604", "0x0607", "0x0609"};
    const auto text = attributes_.text("class");
    return text &&
           std::ranges::any_of(kClasses, [&](std::string_view known) { return text->starts_with(known); });
}

std::optional<std::string> PciDevice::driver() const {
    const auto name = attributes_.linkedName("driver");
    return name ? std::optional(plainText(*name)) : std::nullopt;
}

std::optional<uint16_t> PciDevice::command() const {
    std::array<uint8_t, 2> bytes{};
    if (!attributes_.readAt("config", kCommandOffset, bytes)) {
        return std::nullopt;
    }
    const auto command = static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
    return command == kNoAnswer ? std::nullopt : std::optional(command);
}

bool PciDevice::writeCommand(uint16_t command) const {
    const std::array<uint8_t, 2> bytes{static_cast<uint8_t>(command), static_cast<uint8_t>(command >> 8)};
    return attributes_.writeAt("config", kCommandOffset, bytes);
}

bool PciDevice::changeCommand(uint16_t bit, uint16_t wanted) const {
    const auto before = command();
    if (!before) {
        return false;
    }
    if ((*before & bit) == wanted) {
        return true;
    }
    if (!writeCommand(static_cast<uint16_t>((*before & ~bit) | wanted))) {
        return false;
    }
    const auto after = command();
    return after && (*after & bit) == wanted;
}

}  // namespace pci
