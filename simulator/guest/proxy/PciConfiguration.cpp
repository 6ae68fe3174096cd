#include "simulator/guest/proxy/PciConfiguration.h"

#include <algorithm>
#include <cstddef>

namespace simulator {
namespace {

// Where the numbers are.
constexpr uint32_t kVendor = 0x00;
constexpr uint32_t kDevice = 0x02;
constexpr uint32_t kCommand = 0x04;
constexpr uint32_t kRevision = 0x08;  // and above it, the class code
constexpr uint32_t kCacheLineAndLatency = 0x0C;
constexpr uint32_t kFirstBar = 0x10;
constexpr uint32_t kSubsystemVendor = 0x2C;
constexpr uint32_t kSubsystemDevice = 0x2E;
constexpr uint32_t kInterruptLine = 0x3C;

constexpr uint32_t kWordBytes = 4;
constexpr uint32_t kBitsInAByte = 8;

// Decoding of memory, and bus mastering.
constexpr uint32_t kWritableCommand = 0x0006;

constexpr uint8_t byteOf(uint32_t value, uint32_t index) {
    return static_cast<uint8_t>(value >> (index * kBitsInAByte));
}

constexpr uint32_t offsetOfBar(uint32_t number) {
    return kFirstBar + number * kWordBytes;
}

// At most kBytes, which is beyond the space.
std::size_t placeOf(uint32_t offset, uint32_t index) {
    return std::min(offset, PciConfiguration::kBytes - index) + index;
}

}  // namespace

PciConfiguration::PciConfiguration(const PciFunction& function) : function_(function) {
    put(kVendor, 2, function.vendor);
    put(kDevice, 2, function.device);
    put(kRevision, kWordBytes, function.classCode << kBitsInAByte);
    put(kSubsystemVendor, 2, function.subsystemVendor);
    put(kSubsystemDevice, 2, function.subsystemDevice);
    writable_[kCommand] = kWritableCommand;
    writable_[kCacheLineAndLatency] = writable_[kCacheLineAndLatency + 1] = 0xFF;
    writable_[kInterruptLine] = 0xFF;
    addBar(function.registers);
    if (function.memory) {
        addBar(*function.memory);
    }
}

// The lowest bits stay 0, which tells the guest the size.
void PciConfiguration::addBar(const PciFunction::Range& range) {
    for (uint32_t index = 0; index < kWordBytes; ++index) {
        writable_[offsetOfBar(range.bar) + index] = byteOf(~(range.bytes - 1), index);
    }
}

void PciConfiguration::put(uint32_t offset, uint32_t bytes, uint32_t value) {
    for (uint32_t index = 0; index < bytes; ++index) {
        values_[offset + index] = byteOf(value, index);
    }
}

uint32_t PciConfiguration::read(uint32_t offset, uint32_t bytes) const {
    uint32_t value = 0;
    for (uint32_t index = bytes; index-- > 0;) {
        const std::size_t place = placeOf(offset, index);
        value = value << kBitsInAByte | (place < kBytes ? values_[place] : 0xFF);
    }
    return value;
}

void PciConfiguration::write(uint32_t offset, uint32_t bytes, uint32_t value) {
    for (uint32_t index = 0; index < bytes; ++index) {
        const std::size_t place = placeOf(offset, index);
        if (place < kBytes) {
            const uint8_t mask = writable_[place];
            values_[place] = static_cast<uint8_t>((values_[place] & ~mask) | (byteOf(value, index) & mask));
        }
    }
}

void PciConfiguration::reset() {
    for (uint32_t offset = 0; offset < kBytes; ++offset) {
        values_[offset] = static_cast<uint8_t>(values_[offset] & ~writable_[offset]);
    }
}

std::optional<PciConfiguration::Place> PciConfiguration::find(uint64_t address) const {
    const auto offsetIn = [&](const PciFunction::Range& range) -> std::optional<uint32_t> {
        const uint64_t base = read(offsetOfBar(range.bar), kWordBytes);
        const bool isWithin = address >= base && address - base < range.bytes;
        return isWithin ? std::optional(static_cast<uint32_t>(address - base)) : std::nullopt;
    };
    if (const auto offset = offsetIn(function_.registers)) {
        return Place{.memoryRange = 0, .offset = *offset};
    }
    const auto offset = function_.memory ? offsetIn(*function_.memory) : std::nullopt;
    return offset ? std::optional(Place{.memoryRange = 1, .offset = *offset}) : std::nullopt;
}

}  // namespace simulator
