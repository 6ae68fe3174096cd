#pragma once

// A guest computer's accesses to one card: those that the card carried out, condensed as on the simulated
// machine, and the stray ones, which have no effect and go into the machine's ledger.

#include <cstdint>
#include <string>

#include "simulator/base/AccessDigest.h"
#include "simulator/machine/Machine.h"

namespace simulator {

class GuestAccesses {
  public:
    // The machine, whose card it is, must outlive this object.
    GuestAccesses(Machine& machine, const Card& card) : machine_(machine), card_(card) {}

    // After an access has been carried out. Offset and word are as for AccessDigest.
    void addLoad(uint32_t offset, uint32_t word) { digest_.addLoad(offset, word); }
    void addStore(uint32_t offset, uint32_t word) { digest_.addStore(offset, word); }

    // Adds an access that is not carried out. The detail is one full sentence.
    void addStray(const char* detail);

    // Refuses an access of `bytes` at an address or offset that is not of one aligned word: adds it as stray
    // and returns true.
    [[nodiscard]] bool refuses(uint64_t address, uint32_t bytes) {
        const bool isWord = bytes == sizeof(uint32_t) && address % sizeof(uint32_t) == 0;
        if (!isWord) {
            [[unlikely]] addStray("An access was not of one aligned word.");
        }
        return !isWord;
    }

    // Such as "264 loads, 12 stores, digest 8123079c", and ", 2 stray" if there were any.
    std::string text() const;

  private:
    Machine& machine_;
    const Card& card_;
    AccessDigest digest_;
    uint64_t strays_ = 0;
};

}  // namespace simulator
