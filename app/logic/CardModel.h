#pragma once

// The six card models and how they are named to people.

#include <cstdint>
#include <string>

// Model codes, shared by the device ID register, the identity word and the firmware file names.
constexpr uint16_t kVornMXA = 0x20;
constexpr uint16_t kVornMXB = 0x21;
constexpr uint16_t kVornMXC = 0x22;
constexpr uint16_t kVornK40 = 0x23;
constexpr uint16_t kVornDX8 = 0x24;
constexpr uint16_t kVornDX8XS = 0x25;

bool IsModelCode(uint32_t code);

// "VornMX-A", "Vorn K40" and so on. Every code without a name of its own counts as a VornMX variant.
std::string ModelName(uint16_t modelCode);
