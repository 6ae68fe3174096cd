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
#include <optional>
#include <string>
#include <string_view>
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

struct CardRules {
    std::vector<CardRule> rules;
    // One sentence each about a line or file that was passed over, beginning with its name; printable. If
    // there are more than kMostComplaints, a last sentence says how many more.
    std::vector<std::string> complaints;
    std::size_t furtherComplaints = 0;

    void complain(std::string sentence);

    // The rule for a device: the first that names its subsystem, else the first that names none.
    const CardRule* find(const Identifiers& device, const Identifiers& subsystem) const;
};

// Appends the rules in a text and the complaints about its lines, "KNOWNAS:LINE: ...".
void parseCardRules(std::string_view text, const std::string& knownAs, CardRules& rules);

}  // namespace pci
