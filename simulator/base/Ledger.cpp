#include "simulator/base/Ledger.h"

#include <algorithm>
#include <array>
#include <utility>

namespace simulator {
namespace {

constexpr std::array<std::pair<Misuse, std::string_view>, 7> kNames{{
    {Misuse::shortWait, "short wait"},
    {Misuse::outsideProgrammingMode, "outside programming mode"},
    {Misuse::programmedTwice, "programmed twice"},
    {Misuse::noSuchRow, "no such row"},
    {Misuse::shortScan, "short scan"},
    {Misuse::strayAccess, "stray access"},
    {Misuse::leftBehind, "left behind"},
}};

}  // namespace

std::string_view misuseName(Misuse misuse) {
    return std::ranges::find(kNames, misuse, &std::pair<Misuse, std::string_view>::first)->second;
}

std::optional<Misuse> misuseNamed(std::string_view name) {
    const auto* found = std::ranges::find(kNames, name, &std::pair<Misuse, std::string_view>::second);
    return found == kNames.end() ? std::nullopt : std::optional(found->first);
}

void Ledger::record(Misuse misuse, std::string_view card, std::string_view detail, uint64_t access) {
    const auto same = [&](const Entry& entry) {
        return entry.misuse == misuse && entry.card == card && entry.detail == detail;
    };
    // A misuse in a loop repeats the newest entry, so look there first.
    const auto found = std::find_if(entries_.rbegin(), entries_.rend(), same);
    if (found != entries_.rend()) {
        ++found->times;
    } else {
        entries_.push_back({misuse, std::string(card), std::string(detail), access, 1});
    }
}

}  // namespace simulator
