#include "linux/pci/PciBus.h"

#include <algorithm>
#include <utility>

#include "files/FileError.h"
#include "files/Folder.h"
#include "linux/pci/base/MemoryRange.h"

namespace pci {
namespace {

std::filesystem::path devicesFolder(const std::filesystem::path& sys) {
    return sys / "bus/pci/devices";
}

std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    try {
        return files::Folder(folder).names();
    } catch (const files::FileError&) {
        return {};
    }
}

// Addresses have leading zeros, except that a domain may have more than four digits.
bool isBefore(const std::string& one, const std::string& other) {
    return std::pair(one.size(), one) < std::pair(other.size(), other);
}

bool sharePage(const Resource& one, const Resource& other) {
    const uint64_t bytes = pageBytes();
    return one.first / bytes <= other.last / bytes && other.first / bytes <= one.last / bytes;
}

bool hasMemoryInPagesOf(const Resource& range, const Resources& resources) {
    return std::ranges::any_of(
        resources, [&](const Resource& other) { return other.isPlacedMemory() && sharePage(other, range); });
}

}  // namespace

std::vector<std::string> PciBus::addresses() const {
    std::vector<std::string> addresses = namesIn(devicesFolder(sys_));
    std::erase_if(addresses, [](const std::string& name) { return !isAddress(name); });
    std::ranges::sort(addresses, isBefore);
    return addresses;
}

std::optional<PciDevice> PciBus::device(const std::string& address) const {
    if (!isAddress(address)) {
        return std::nullopt;
    }
    auto attributes = Attributes::open(devicesFolder(sys_) / address);
    return attributes ? std::optional(PciDevice(address, std::move(*attributes))) : std::nullopt;
}

// Asks without opening anything, which can fail for reasons of this program's own.
bool PciBus::isThere(const std::string& address) const {
    std::error_code error;
    return std::filesystem::exists(devicesFolder(sys_) / address, error) || error;
}

std::string PciBus::location(const std::string& address) const {
    const std::string place = address.substr(0, address.rfind('.'));  // a slot's functions share it
    const std::filesystem::path slots = sys_ / "bus/pci/slots";
    std::vector<std::string> names = namesIn(slots);
    std::ranges::sort(names);
    for (const std::string& name : names) {
        const auto slot = Attributes::open(slots / name);
        if (slot && slot->text("address") == place + "\n") {
            return "PCI slot " + plainText(name);
        }
    }
    return address;
}

bool PciBus::isLockedDown() const {
    const auto security = Attributes::open(sys_ / "kernel/security");
    const auto states = security ? security->text("lockdown") : std::nullopt;
    return states && (states->find("[integrity]") != std::string::npos ||
                      states->find("[confidentiality]") != std::string::npos);
}

std::optional<std::string> PciBus::neighbour(const std::string& address, const Resource& range) const {
    const std::vector<std::string> all = addresses();
    if (std::ranges::find(all, address) == all.end()) {
        return "";
    }
    for (const std::string& other : all) {
        const auto found = other == address ? std::nullopt : device(other);
        const auto resources = found ? found->resources() : std::nullopt;
        if (resources && hasMemoryInPagesOf(range, *resources)) {
            return other;
        }
        if (!resources && other != address && isThere(other)) {
            return "";
        }
    }
    return std::nullopt;
}

}  // namespace pci
