#pragma once

// A card's memory ranges, as the agent and its clients count, measure and hand them over.

#include <cstddef>
#include <cstdint>

#include "files/OpenFile.h"

namespace pci {

// They are numbered 0 (the registers) and 1, whichever of the device's base address registers they are.
constexpr uint32_t kMemoryRanges = 2;

// What the registers take up. A range with fewer bytes cannot be a card's.
constexpr uint32_t kRegisterBytes = 0x200;

// An open file whose pages, mapped from offset 0, hold the range.
struct OpenedRange {
    files::OpenFile file;
    uint32_t offsetInPage;  // where the range begins, less than a page
    uint32_t bytes;
};

// Of this computer's memory.
std::size_t pageBytes();

}  // namespace pci
