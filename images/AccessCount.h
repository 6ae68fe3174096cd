#pragma once

// The number of register accesses that the player makes for an image, on a card that answers as the image
// expects. It is calculated from the commands and the TAP's state diagram, without the player.

#include <cstdint>
#include <istream>
#include <optional>

#include "images/Command.h"

namespace images {

// Waits are timed by register accesses, of which a card takes this many in a microsecond. Each TCK level is
// one store and the loads of its settling time; a TCK cycle has three levels.
constexpr uint64_t kAccessesPerMicrosecond = 3;
constexpr uint64_t kSettlingLoads = 5 * kAccessesPerMicrosecond;
constexpr uint64_t kLevelsPerClock = 3;

struct Accesses {
    uint64_t stores = 0;
    uint64_t loads = 0;

    uint64_t count() const { return stores + loads; }
    double seconds() const { return static_cast<double>(count()) / (1e6 * double{kAccessesPerMicrosecond}); }
    bool operator==(const Accesses&) const = default;
};

// Counts the accesses of one command after another. Every command must have passed CommandRules.
class AccessCounter {
  public:
    // Begins with the accesses of the run itself: the reset of the chain, and the idle word before and after.
    AccessCounter();

    void take(const Command& command);

    const Accesses& total() const { return total_; }
    uint8_t tapState() const { return tapState_; }
    uint32_t dataBits() const { return dataBits_; }
    uint32_t waitMicroseconds() const { return waitMicroseconds_; }

  private:
    void clock(uint64_t cycles);
    void go(uint8_t state);
    void wait(uint32_t microseconds);
    // Goes to a Shift state, shifts the bits and goes to the end state; `samples` of the bits are read back.
    void scan(uint8_t shiftState, uint32_t bits, uint8_t endState, uint32_t samples);
    void scanCompared();
    // The commands that shift the data register. Other commands make no accesses.
    void scanData(const Command& command);

    Accesses total_;
    uint8_t tapState_ = kTapTestLogicReset;
    uint8_t instructionEnd_ = kTapRunTestIdle;
    uint8_t dataEnd_ = kTapRunTestIdle;
    uint32_t dataBits_ = 0;
    uint32_t waitMicroseconds_ = 0;
};

// The accesses of a whole image, or nothing if it does not reach XCOMPLETE. Reads it piece by piece.
std::optional<Accesses> accessesOf(std::istream& image);

}  // namespace images
