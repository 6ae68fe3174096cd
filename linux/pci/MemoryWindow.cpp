#include "linux/pci/MemoryWindow.h"

#include <bit>

#include "linux/pci/base/Refusals.h"

namespace pci {
namespace {

std::optional<std::size_t> barOf(const CardRule& rule, const Resources& resources, uint32_t memoryRange) {
    if (memoryRange >= kMemoryRanges) {
        return std::nullopt;
    }
    if (const auto bar = rule.bars[memoryRange]) {
        return resources[*bar].isMemory() ? std::optional<std::size_t>(*bar) : std::nullopt;
    }
    uint32_t earlier = 0;
    for (std::size_t bar = 0; bar < kBars; ++bar) {
        if (resources[bar].isMemory() && earlier++ == memoryRange) {
            return bar;
        }
    }
    return std::nullopt;
}

// The bus knows only powers of two at multiples of their size, so a small window is within a page. The kernel
// would map too few pages of any other.
bool isAligned(const Resource& resource) {
    return std::has_single_bit(resource.bytes()) && resource.first % resource.bytes() == 0;
}

}  // namespace

std::optional<MemoryWindow> windowOf(const CardRule& rule, const Resources& resources, uint32_t memoryRange) {
    const auto bar = barOf(rule, resources, memoryRange);
    if (!bar || resources[*bar].bytes() < kRegisterBytes) {
        return std::nullopt;
    }
    return MemoryWindow{.bar = *bar, .resource = resources[*bar]};
}

std::string refusalOf(const MemoryWindow& window, const PciBus& bus, const std::string& address) {
    if (!window.resource.isPlacedMemory() || !isAligned(window.resource)) {
        return refusals::kNotPlaced;
    }
    const auto neighbour = bus.neighbour(address, window.resource);
    if (!neighbour) {
        return "";
    }
    if (neighbour->empty()) {
        return refusals::kUnknownNeighbours;
    }
    return refusals::neighbour(*neighbour);
}

}  // namespace pci
