#pragma once

// Condenses the register accesses that pass to another host to a digest. Two runs have the same one if all
// their accesses have the same order, offset, direction and word as it lies in memory.

#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>

#include "tests/support/ForwardingHost.h"

class TracingHost : public ForwardingHost {
  public:
    using ForwardingHost::ForwardingHost;

    uint32_t loadWord(const uint32_t* address) override {
        const uint32_t word = ForwardingHost::loadWord(address);
        ++loads_;
        trace(offsetOf(address), word);
        return word;
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        ++stores_;
        trace(offsetOf(address) | kStore, word);
        ForwardingHost::storeWord(address, word);
    }
    [[nodiscard]] std::string summary() const {
        char text[100];
        std::snprintf(text, sizeof text, "%llu loads, %llu stores, digest %08x", loads_, stores_,
                      unsigned{digest_});
        return text;
    }

  protected:
    // Called now and then, so that two runs that differ can show where.
    virtual void madeManyAccesses() {}

  private:
    static constexpr uint32_t kStore = 1;  // in the bits that an aligned offset leaves free
    static constexpr uint64_t kManyAccesses = 1 << 24;

    void trace(uint32_t access, uint32_t word) {
        mix(access);
        mix(word);
        if ((loads_ + stores_) % kManyAccesses == 0) {
            madeManyAccesses();
        }
    }
    // The rotation lets a word's high bits reach the low ones, which multiplication alone would not.
    void mix(uint32_t word) {
        constexpr uint32_t kGoldenRatio = 0x9E3779B1;
        digest_ = (std::rotl(digest_, 5) ^ word) * kGoldenRatio;
    }

    uint32_t digest_ = 0;
    unsigned long long loads_ = 0;
    unsigned long long stores_ = 0;
};
