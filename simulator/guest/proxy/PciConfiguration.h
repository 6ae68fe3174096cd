#pragma once

// The configuration space of a card on a guest computer's bus: 256 bytes, the lowest byte first in each
// number.

#include <array>
#include <cstdint>
#include <optional>

#include "simulator/guest/proxy/PciFunction.h"

namespace simulator {

class PciConfiguration {
  public:
    static constexpr uint32_t kBytes = 256;

    explicit PciConfiguration(const PciFunction& function);

    // As the guest accesses it: 1 to 4 bytes at any offset, also unaligned. Bytes beyond the space read as
    // ones and ignore writes. Elsewhere a write changes only the bits that the bus lets a guest change.
    uint32_t read(uint32_t offset, uint32_t bytes) const;
    void write(uint32_t offset, uint32_t bytes, uint32_t value);

    // As the bus's reset leaves it: without addresses, and not decoding any.
    void reset();

    struct Place {
        uint32_t memoryRange;  // 0 the registers, 1 the memory
        uint32_t offset;
    };
    // Where an address of the guest's memory leads; nothing if it is not in one of the card's ranges.
    std::optional<Place> find(uint64_t address) const;

  private:
    void put(uint32_t offset, uint32_t bytes, uint32_t value);
    void addBar(const PciFunction::Range& range);

    PciFunction function_;
    std::array<uint8_t, kBytes> values_{};
    std::array<uint8_t, kBytes> writable_{};  // bits that the guest can change
};

}  // namespace simulator
