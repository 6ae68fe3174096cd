#include "simulator/jtag/TapController.h"

#include <array>
#include <cstddef>

namespace simulator {
namespace {

using enum TapState;

struct Row {
    std::string_view name;
    TapState whenLow;   // TMS 0
    TapState whenHigh;  // TMS 1
};

// In the order of the enumeration.
constexpr std::array<Row, 16> kTable{{
    {"Test-Logic-Reset", runTestIdle, testLogicReset},
    {"Run-Test/Idle", runTestIdle, selectDrScan},
    {"Select-DR-Scan", captureDr, selectIrScan},
    {"Capture-DR", shiftDr, exit1Dr},
    {"Shift-DR", shiftDr, exit1Dr},
    {"Exit1-DR", pauseDr, updateDr},
    {"Pause-DR", pauseDr, exit2Dr},
    {"Exit2-DR", shiftDr, updateDr},
    {"Update-DR", runTestIdle, selectDrScan},
    {"Select-IR-Scan", captureIr, testLogicReset},
    {"Capture-IR", shiftIr, exit1Ir},
    {"Shift-IR", shiftIr, exit1Ir},
    {"Exit1-IR", pauseIr, updateIr},
    {"Pause-IR", pauseIr, exit2Ir},
    {"Exit2-IR", shiftIr, updateIr},
    {"Update-IR", runTestIdle, selectDrScan},
}};

const Row& rowOf(TapState state) {
    return kTable[static_cast<std::size_t>(state)];
}

}  // namespace

TapState nextTapState(TapState state, bool tms) {
    return tms ? rowOf(state).whenHigh : rowOf(state).whenLow;
}

std::string_view tapStateName(TapState state) {
    return rowOf(state).name;
}

std::optional<TapState> tapStateNamed(std::string_view name) {
    for (std::size_t index = 0; index < kTable.size(); ++index) {
        if (kTable[index].name == name) {
            return static_cast<TapState>(index);
        }
    }
    return std::nullopt;
}

}  // namespace simulator
