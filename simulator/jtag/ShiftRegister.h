#pragma once

// A register of the chain while it is shifted: bits enter at the top and leave at the bottom. A step costs
// the same for 1 bit as for 4096, since the bits stay in place and the bottom moves.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace simulator {

class ShiftRegister {
  public:
    // The longest register holds a page of the PROM. Room for it is there from the start, so that playing an
    // image allocates nothing.
    static constexpr std::size_t kMostBits = 4096;

    // Sets the length, at most kMostBits, and the content. Bit i is bit i % 8 of byte i / 8; bit 0 leaves
    // first.
    void load(std::span<const uint8_t> bytes, std::size_t bits);
    // The same for at most 32 bits of a number, least significant bit first.
    void loadNumber(uint32_t number, std::size_t bits);

    // The bit that leaves next; an empty register holds 0.
    bool bottom() const { return count_ != 0 && bits_[bottom_] != 0; }

    // Drops the bottom bit and takes one in at the top.
    void shift(bool in) {
        if (count_ == 0) {
            return;
        }
        bits_[bottom_] = in ? 1 : 0;
        if (++bottom_ == count_) {
            bottom_ = 0;
        }
    }

    std::size_t bits() const { return count_; }
    std::vector<uint8_t> bytes() const;           // (bits() + 7) / 8 of them, unused bits 0
    void copyTo(std::span<uint8_t> bytes) const;  // the same, into a span of that length
    uint32_t number() const;                      // the lowest 32 bits

  private:
    std::array<uint8_t, kMostBits> bits_{};  // one bit each
    std::size_t count_ = 0;
    std::size_t bottom_ = 0;
};

}  // namespace simulator
