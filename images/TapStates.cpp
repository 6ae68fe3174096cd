#include "images/TapStates.h"

#include <algorithm>
#include <array>

#include "xsvf/Format.h"

namespace images {
namespace {

constexpr uint8_t kStates = 6;
constexpr uint8_t kNoWay = 0xFF;

struct TapStateRow {
    uint8_t code;
    std::string_view name;
    std::array<uint8_t, kStates> clocks;  // to the states in the order of the rows
};

// Counted in the state diagram of IEEE 1149.1 along the player's way, which resets with five clocks from any
// state.
constexpr std::array<TapStateRow, kStates> kRows = {{
    {kTapTestLogicReset, "Test-Logic-Reset", {5, 1, kNoWay, 4, kNoWay, 5}},
    {kTapRunTestIdle, "Run-Test/Idle", {5, 0, kNoWay, 3, kNoWay, 4}},
    {kTapPauseDR, "Pause-DR", {5, 3, 0, 2, kNoWay, 6}},
    {kTapShiftDR, "Shift-DR", {5, 3, 2, 0, kNoWay, 6}},
    {kTapPauseIR, "Pause-IR", {5, 3, kNoWay, 5, 0, 2}},
    {kTapShiftIR, "Shift-IR", {5, 3, kNoWay, 5, 2, 0}},
}};

}  // namespace

std::optional<std::string_view> tapStateName(uint8_t code) {
    const auto* const row = std::ranges::find(kRows, code, &TapStateRow::code);
    return row != kRows.end() ? std::optional(row->name) : std::nullopt;
}

std::optional<uint8_t> tapStateCode(std::string_view name) {
    const auto* const row = std::ranges::find(kRows, name, &TapStateRow::name);
    return row != kRows.end() ? std::optional(row->code) : std::nullopt;
}

std::optional<uint32_t> tapClocks(uint8_t from, uint8_t to) {
    const auto* const start = std::ranges::find(kRows, from, &TapStateRow::code);
    const auto* const goal = std::ranges::find(kRows, to, &TapStateRow::code);
    if (start == kRows.end() || goal == kRows.end()) {
        return std::nullopt;
    }
    const uint8_t clocks = start->clocks[static_cast<std::size_t>(goal - kRows.begin())];
    return clocks != kNoWay ? std::optional<uint32_t>(clocks) : std::nullopt;
}

}  // namespace images
