#include "simulator/jtag/ShiftRegister.h"

#include <algorithm>
#include <cassert>

namespace simulator {

void ShiftRegister::load(std::span<const uint8_t> bytes, std::size_t bits) {
    assert(bytes.size() * 8 >= bits && bits <= kMostBits);
    count_ = bits;
    bottom_ = 0;
    for (std::size_t i = 0; i < bits; ++i) {
        bits_[i] = static_cast<uint8_t>(bytes[i / 8] >> (i % 8) & 1);
    }
}

void ShiftRegister::loadNumber(uint32_t number, std::size_t bits) {
    assert(bits <= 32);
    count_ = bits;
    bottom_ = 0;
    for (std::size_t i = 0; i < bits; ++i) {
        bits_[i] = static_cast<uint8_t>(number >> i & 1);
    }
}

std::vector<uint8_t> ShiftRegister::bytes() const {
    std::vector<uint8_t> bytes((count_ + 7) / 8);
    copyTo(bytes);
    return bytes;
}

void ShiftRegister::copyTo(std::span<uint8_t> bytes) const {
    std::ranges::fill(bytes, uint8_t{0});
    for (std::size_t i = 0; i < count_; ++i) {
        const unsigned bit = bits_[(bottom_ + i) % count_];
        bytes[i / 8] = static_cast<uint8_t>(bytes[i / 8] | bit << (i % 8));
    }
}

uint32_t ShiftRegister::number() const {
    uint32_t number = 0;
    for (std::size_t i = 0; i < std::min<std::size_t>(count_, 32); ++i) {
        number |= static_cast<uint32_t>(bits_[(bottom_ + i) % count_]) << i;
    }
    return number;
}

}  // namespace simulator
