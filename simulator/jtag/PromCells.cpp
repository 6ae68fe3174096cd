#include "simulator/jtag/PromCells.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace simulator {
namespace {

// The bit that damage flips in a byte: one in every second byte, in what looks like random places.
uint8_t damageAt(std::size_t offset) {
    if (offset % 2 != 0) {
        return 0;
    }
    constexpr uint32_t kGoldenRatio = 0x9E3779B1;  // spreads neighbouring numbers
    const uint32_t spread = static_cast<uint32_t>(offset + 1) * kGoldenRatio >> 16;
    return static_cast<uint8_t>(1U << (spread % (offset == PromCells::kProtectionAt ? 3 : 8)));
}

}  // namespace

PromCells::PromCells(std::span<const uint8_t> pages, uint32_t userCode, uint8_t protection) : PromCells() {
    assert(pages.size() == kPromBytes);
    std::ranges::copy(pages, bytes_.begin());
    setUserCode(userCode);
    setProtection(protection);
}

PromCells::PromCells(std::vector<uint8_t> image) : bytes_(std::move(image)) {
    assert(bytes_.size() == kBytes);
}

uint32_t PromCells::userCode() const {
    uint32_t number = 0;
    for (const uint8_t byte : bytesOf(kUserCode)) {
        number = number << 8 | byte;
    }
    return number;
}

bool PromCells::isPageErased(std::size_t number) const {
    return std::ranges::all_of(bytesOf(page(number)), [](uint8_t byte) { return byte == 0xFF; });
}

void PromCells::programPage(std::size_t number, std::span<const uint8_t> data) {
    const Row row = page(number);
    assert(number < kPromPages && data.size() == row.bytes);
    for (std::size_t i = 0; i < row.bytes; ++i) {
        bytes_[row.offset + i] &= data[i];
    }
    changed(row);
}

void PromCells::setUserCode(uint32_t userCode) {
    for (std::size_t i = kUserCode.bytes; i-- > 0; userCode >>= 8) {
        bytes_[kUserCodeAt + i] = static_cast<uint8_t>(userCode);
    }
    changed(kUserCode);
}

void PromCells::setProtection(uint8_t protection) {
    bytes_[kProtectionAt] = protection & kProtectionMask;
    changed(kProtection);
}

void PromCells::erase() {
    std::ranges::fill(bytes_, uint8_t{0xFF});
    bytes_[kProtectionAt] = kProtectionMask;
    changed(kEverything);
}

void PromCells::assign(std::span<const uint8_t> image) {
    assert(image.size() == kBytes);
    std::ranges::copy(image, bytes_.begin());
    changed(kEverything);
}

void PromCells::toggleDamage(Row row) {
    for (std::size_t offset = row.offset; offset < row.offset + row.bytes; ++offset) {
        bytes_[offset] ^= damageAt(offset);
    }
    changed(row);
}

void PromCells::changed(Row row) {
    if (writeThrough_) {
        writeThrough_(row.offset, bytesOf(row));
    }
}

}  // namespace simulator
