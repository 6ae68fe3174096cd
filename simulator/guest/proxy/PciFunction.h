#pragma once

// How a simulated card presents itself on a guest computer's bus.

#include <cstdint>
#include <optional>

namespace simulator {

struct PciFunction {
    // One of the card's memory ranges.
    struct Range {
        static constexpr uint32_t kLeastBytes = 0x10;  // what the bus allows
        static constexpr uint32_t kMostBytes = 0x1000000;

        uint32_t bar;    // the number of its base address register, 0 to kPciBars - 1
        uint32_t bytes;  // a power of two
    };

    // This vendor number is unassigned, and so is the class. So no driver takes the card, and no
    // configuration that names a real one matches it.
    uint16_t vendor = 0xFADE;
    uint16_t device = 0xCA4D;
    uint16_t subsystemVendor = 0xFADE;
    uint16_t subsystemDevice = 0xCA4D;
    uint32_t classCode = 0xFF0000;  // class, subclass and programming interface

    // In different base address registers.
    Range registers{.bar = 0, .bytes = 0x1000};
    std::optional<Range> memory = Range{.bar = 1, .bytes = 0x1000};
};

constexpr uint32_t kPciBars = 6;

}  // namespace simulator
