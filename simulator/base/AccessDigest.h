#pragma once

// A run's register accesses, condensed to their number and a digest of 32 bits. Two runs have the same if all
// accesses have the same order, offset, direction and word as it lies in memory, on any processor. Only by
// chance do two runs that differ have the same.

#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>

namespace simulator {

class AccessDigest {
  public:
    // Add the accesses in the order in which they are made, a load with the word that it returned. The offset
    // is in bytes from the start of the registers, a multiple of four. The word's most significant byte is
    // the one at the lowest address.
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

    // Loads and stores together.
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
