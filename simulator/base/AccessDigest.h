#pragma once

// A run's register accesses, condensed to their number and a digest. Two runs have the same if all accesses
// have the same order, offset, direction and word as it lies in memory.

#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>

namespace simulator {

class AccessDigest {
  public:
    // The offset is a multiple of four. The word's most significant byte is the one at the lowest address.
    void addLoad(uint32_t offset, uint32_t word) {
        ++loads_;
        mix(offset);
        mix(word);
    }
    void addStore(uint32_t offset, uint32_t word) {
        ++stores_;
        mix(offset | kStore);
        mix(word);
    }

    uint64_t accesses() const { return loads_ + stores_; }

    // Such as "264 loads, 12 stores, digest 8123079c".
    std::string text() const {
        std::array<char, 9> digits{};
        std::snprintf(digits.data(), digits.size(), "%08x", unsigned{digest_});
        return std::to_string(loads_) + " loads, " + std::to_string(stores_) + " stores, digest " +
               digits.data();
    }

  private:
    static constexpr uint32_t kStore = 1;  // in the bits that an aligned offset leaves free

    // The rotation lets a word's high bits reach the low ones, which multiplication alone would not.
    void mix(uint32_t word) {
        constexpr uint32_t kGoldenRatio = 0x9E3779B1;
        digest_ = (std::rotl(digest_, 5) ^ word) * kGoldenRatio;
    }

    uint32_t digest_ = 0;
    uint64_t loads_ = 0;
    uint64_t stores_ = 0;
};

}  // namespace simulator
