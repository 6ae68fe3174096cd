#pragma once

// Where a card's memory ranges lie, and whether they can be mapped without another device's registers.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "linux/pci/CardRules.h"
#include "linux/pci/PciBus.h"

namespace pci {

struct MemoryWindow {
    std::size_t bar;    // the number of the base address register, 0 to 5
    Resource resource;  // of memory, at least kRegisterBytes; it may not have been placed
    bool operator==(const MemoryWindow&) const = default;
};

// The window that is a card's memory range 0 or 1; nothing if there is none that holds a card's registers.
std::optional<MemoryWindow> windowOf(const CardRule& rule, const Resources& resources, uint32_t memoryRange);

// Why the window must not be mapped; empty if it may be. Only whole pages can be mapped, so a page that holds
// another device's registers too would give those away.
std::string refusalOf(const MemoryWindow& window, const PciBus& bus, const std::string& address);

}  // namespace pci
