#pragma once

// A firmware image that does to two pages what a whole one does to all.

#include <cstdint>
#include <vector>

struct TwoPageRecipe {
    uint32_t eraseMicroseconds = 15'000'000;
    uint32_t programMicroseconds = 14'000;
    bool erases = true;
};

// Page n, 0 or 1, comes to hold this byte and zeros after it.
constexpr uint8_t pageByte(uint32_t page) {
    return static_cast<uint8_t>(0x5A + page);
}
std::vector<uint8_t> wantedPage(uint32_t page);

std::vector<uint8_t> twoPageImage(const TwoPageRecipe& recipe = {});
