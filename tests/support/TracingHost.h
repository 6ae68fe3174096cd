#pragma once

// A host that passes everything on and condenses the register accesses to a digest.

#include <cstdint>
#include <string>

#include "simulator/base/AccessDigest.h"
#include "tests/support/ForwardingHost.h"

class TracingHost : public ForwardingHost {
  public:
    using ForwardingHost::ForwardingHost;

    uint32_t loadWord(const uint32_t* address) override {
        const uint32_t word = ForwardingHost::loadWord(address);
        accesses_.addLoad(offsetOf(address), word);
        lookNowAndThen();
        return word;
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        accesses_.addStore(offsetOf(address), word);
        lookNowAndThen();
        ForwardingHost::storeWord(address, word);
    }
    std::string summary() const { return accesses_.text(); }

  protected:
    // Called now and then, so that two runs that differ can show where.
    virtual void madeManyAccesses() {}

  private:
    static constexpr uint64_t kManyAccesses = 1 << 24;

    void lookNowAndThen() {
        if (accesses_.accesses() % kManyAccesses == 0) {
            madeManyAccesses();
        }
    }

    simulator::AccessDigest accesses_;
};
