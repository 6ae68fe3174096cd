#pragma once

// What is broken about a card, now or at a set moment.
//
// A fault strikes once and then lasts, across power cycles too, until it is removed. Two are over at once and
// do not strike again: a loss of power, which the next power-up ends, and the machine's sleep, from which it
// wakes by itself. If something prevents that sleep when its moment comes, it is over, too: what asked for it
// was refused and does not ask again.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace simulator {

enum class FaultKind : uint8_t {
    // On the card's JTAG chain.
    tdoStuckLow,   // the card reads TDO as 0, even if the chain is broken
    tdoStuckHigh,  // the card reads TDO as 1
    chainBroken,   // TDI is high whatever is written, TDO floats high
    // In its PROM.
    foreignIdentification,  // the PROM answers with another identification code
    pageNotTaken,           // programming a page takes its time and changes nothing
    pageMisread,            // a page reads back wrongly a number of times, then correctly
    userCodeNotTaken,       // programming the user code takes its time and changes nothing
    slowProgramming,        // programming needs a multiple of the data sheet's time
    // In the whole machine, whichever of its cards has the fault.
    powerLost,      // the machine goes off
    machineSleeps,  // it takes the power away from all cards, and gives it back; its programs go on
    // On the machine's bus, or on a guest computer's.
    cardVanished,  // the card keeps its power but does not answer
    // In the driver, which a guest computer does not use.
    serviceNotOpened,  // the driver refuses connections to the card
    serviceNotMapped,  // the driver does not map the card's memory
    serviceSilent,     // the driver does not report the card's name and location
};

// One fault of a card. Which of code, page, times and factor a kind uses is in its description; the others
// keep their initial values. The limits are checked when a fault is read from a file or a command line, not
// here.
struct Fault {
    enum class When : uint8_t {
        atOnce,    // as soon as there is power
        atAccess,  // before the machine's access of this number is carried out
        atClock,   // after this rising edge of the card's TCK, counted from power-up
    };

    // The words for them in files, in the order of the enumeration.
    static constexpr std::array<std::string_view, 3> kWhenNames{"at once", "at access", "at clock"};

    static constexpr uint32_t kMostTimes = 1'000'000;
    static constexpr uint32_t kLeastFactor = 2;
    static constexpr uint32_t kMostFactor = 1000;

    FaultKind kind;
    uint32_t code = 0;    // foreignIdentification
    uint32_t page = 0;    // pageNotTaken, pageMisread: 0 to kPromPages - 1
    uint32_t times = 0;   // pageMisread: wrong readings still to come, up to kMostTimes; 0 when it is over
    uint32_t factor = 1;  // slowProgramming: kLeastFactor to kMostFactor
    When when = When::atOnce;
    uint64_t count = 0;      // of accesses or clocks; atOnce does not use it
    bool struck = false;     // and so in force, unless it was over at once
    bool prevented = false;  // machineSleeps: it struck, but sleep was prevented

    bool operator==(const Fault&) const = default;
};

// What a kind is called, and which of a Fault's fields it uses. Files and command lines have these alone.
struct FaultKindDescription {
    std::string_view name;
    std::string_view meaning;  // to follow "The card: "
    bool hasCode = false;
    bool hasPage = false;
    bool hasTimes = false;
    bool hasFactor = false;
    bool canBePrevented = false;
};

constexpr std::size_t kFaultKinds = static_cast<std::size_t>(FaultKind::serviceSilent) + 1;

// By kind. The names are what files and command lines use.
const std::array<FaultKindDescription, kFaultKinds>& faultKinds();
inline const FaultKindDescription& describe(FaultKind kind) {
    return faultKinds()[static_cast<std::size_t>(kind)];
}

// One card's faults.
class Faults {
  public:
    // Adds one, or replaces the one of the same kind (and page). It does not strike before strike() is
    // called.
    void add(const Fault& fault);
    // Removes those of a kind, struck or not. Returns how many there were.
    std::size_t remove(FaultKind kind);
    // Replaces all by those that an earlier run ended with.
    void restore(std::vector<Fault> faults) { faults_ = std::move(faults); }
    // In the order in which they were added.
    const std::vector<Fault>& all() const { return faults_; }

    // Whether a fault of this kind has struck and has not been removed since.
    bool hasStruck(FaultKind kind) const { return struck(kind) != nullptr; }

    // Triggers every fault that is due when the machine has made these accesses and the card's TCK these
    // rising edges; true if any was. What a fault then does to the card or the machine is the caller's part.
    [[nodiscard]] bool strike(uint64_t accesses, uint64_t clocks);
    // Notes that a fault which has struck did nothing.
    void notePrevented(FaultKind kind);
    // The smallest count that a fault still waits for; nothing if none does.
    std::optional<uint64_t> nextCount(Fault::When when) const;

    // How the faults that have struck change the PROM: the identification code that it gives instead of its
    // own; the factor by which programming takes longer, 1 without a fault; whether a page takes its data.
    std::optional<uint32_t> foreignIdentification() const;
    uint32_t programmingFactor() const;
    bool takesPage(std::size_t page) const;
    // Whether the reading of the page that begins now goes wrong. If so, it is counted.
    [[nodiscard]] bool consumeMisread(std::size_t page);

  private:
    const Fault* struck(FaultKind kind) const;

    std::vector<Fault> faults_;
};

}  // namespace simulator
