#pragma once

// The administrator's rules that say which devices on the bus are cards. Each line names one kind of card; #
// begins a comment.
//
//   VENDOR:DEVICE [SUBVENDOR:SUBDEVICE] [range0=BAR] [range1=BAR] [simulated] "NAME"
//
// Identifiers are four hexadecimal digits, a BAR is 0 to 5, and a name is printable ASCII.

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "linux/pci/base/MemoryRange.h"

namespace pci {

// More than anybody needs, and few enough that a wrong file does no harm.
constexpr std::size_t kMostRules = 1000;
constexpr std::size_t kMostComplaints = 100;
constexpr std::size_t kMostNameCharacters = 63;

// Vendor and device numbers, of a device or of the board that it is on.
struct Identifiers {
    uint16_t vendor = 0;
    uint16_t device = 0;
    bool operator==(const Identifiers&) const = default;
    bool operator<(const Identifiers& other) const {
        return vendor != other.vendor ? vendor < other.vendor : device < other.device;
    }
};

struct CardRule {
    Identifiers device;
    std::optional<Identifiers> subsystem;  // nothing if the rule is for all
    // The number of the BAR that each range is; nothing if range n is the n-th BAR for memory.
    std::array<std::optional<uint32_t>, kMemoryRanges> bars;
    bool isSimulated = false;  // a card on a guest computer's bus
    std::string name;          // for people
    bool operator==(const CardRule&) const = default;
};

// A device and, if the line is only for one, a subsystem.
using NamedKind = std::pair<Identifiers, std::optional<Identifiers>>;

// The first line that names a kind of card.
struct FirstLine {
    std::string place;  // for people
    bool isSimulated = false;
    bool isContradicted = false;  // a later line disagrees on whether the card is simulated
};

struct CardRules {
    // At most one for each kind, and none for a kind whose lines contradict each other: images for simulated
    // cards would ruin a real one.
    std::vector<CardRule> rules;
    std::map<NamedKind, FirstLine> firstLines;  // also of the kinds that have no rule
    // One sentence each about a line or file that was passed over, beginning with its name; printable. If
    // there are more than kMostComplaints, a last sentence says how many more.
    std::vector<std::string> complaints;
    std::size_t furtherComplaints = 0;

    void complain(std::string sentence);

    // The rule for a device; nothing if there is none. Lines that name its subsystem are preferred to those
    // that name none, even if they contradict each other.
    const CardRule* find(const Identifiers& device, const Identifiers& subsystem) const;
};

// Appends the rules in a text and the complaints about its lines, "KNOWNAS:LINE: ...".
void parseCardRules(std::string_view text, const std::string& knownAs, CardRules& rules);

}  // namespace pci
