#pragma once

// A record of misuse: what the data sheet forbids, even if it worked by luck. A correct update leaves the
// ledger empty.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simulator {

enum class Misuse {
    shortWait,               // an operation of the PROM was not given its time in Run-Test/Idle
    outsideProgrammingMode,  // program or erase while the PROM was not in programming mode
    programmedTwice,         // a page that was not erased was programmed
    noSuchRow,               // program at an address, or of a data register, that leads to no row
    shortScan,               // a register was updated before the scan had filled it
    strayAccess,             // a load or store outside every mapped window
    leftBehind,              // a program ended without releasing what it had been given
};

// The name of a misuse in files and listings, and back; nothing for an unknown name.
std::string_view misuseName(Misuse misuse);
std::optional<Misuse> misuseNamed(std::string_view name);

// How a device reports a misuse; the detail is one full sentence.
using MisuseReport = std::function<void(Misuse misuse, const std::string& detail)>;

class Ledger {
  public:
    // A misuse that happened once or more, always to the same card and in the same words.
    struct Entry {
        Misuse misuse;
        std::string card;  // its name; empty if no card is involved
        std::string detail;
        uint64_t firstAccess;  // the clock's count when it first happened
        uint64_t times;        // at least 1

        bool operator==(const Entry&) const = default;
    };

    // Adds an entry, or counts an existing one with the same misuse, card and detail. Card and detail are as
    // in an Entry, and `access` is the clock's count now.
    void record(Misuse misuse, std::string_view card, std::string_view detail, uint64_t access);

    // In the order in which they first happened since the machine was made: switching it off keeps them.
    const std::vector<Entry>& entries() const { return entries_; }
    bool empty() const { return entries_.empty(); }
    // Replaces all by those of an earlier run.
    void restore(std::vector<Entry> entries) { entries_ = std::move(entries); }

  private:
    std::vector<Entry> entries_;
};

}  // namespace simulator
