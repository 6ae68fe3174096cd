#pragma once

// Condenses a run's register accesses, in their order, to a few lines that two runs share when every access
// is the same: its offset, whether it loads or stores, and the word as it lies in memory.

#include <bit>
#include <cstdint>
#include <cstdio>

class AccessTrace {
  public:
    enum class Kind : uint32_t { load = 0, store = 1 };  // in the bits that an aligned offset leaves free

    void add(Kind kind, uint32_t offset, uint32_t word) {
        mix(offset | static_cast<uint32_t>(kind));
        mix(word);
        ++counts_[static_cast<uint32_t>(kind)];
        if ((loads() + stores()) % kAccessesPerLine == 0) {
            print();  // so that two runs that differ show where
        }
    }

    void print() const {
        std::printf("%llu loads, %llu stores, digest %08x\n", loads(), stores(), unsigned{digest_});
    }

  private:
    static constexpr uint64_t kAccessesPerLine = 1 << 24;

    [[nodiscard]] unsigned long long loads() const { return counts_[0]; }
    [[nodiscard]] unsigned long long stores() const { return counts_[1]; }

    // Rotated before it is multiplied, which alone would never let a word's high bits reach the low ones.
    void mix(uint32_t word) {
        constexpr uint32_t kGoldenRatio = 0x9E3779B1;
        digest_ = (std::rotl(digest_, 5) ^ word) * kGoldenRatio;
    }

    uint32_t digest_ = 0;
    uint64_t counts_[2] = {};
};
