#pragma once

// The sixteen-state test access port controller of IEEE 1149.1.
//
//                TMS 0                        TMS 1
//   Test-Logic-Reset  -> Run-Test/Idle        (itself)
//   Run-Test/Idle     -> (itself)             Select-DR-Scan
//   Select-DR-Scan    -> Capture-DR           Select-IR-Scan
//   Select-IR-Scan    -> Capture-IR           Test-Logic-Reset
//   Capture           -> Shift                Exit1
//   Shift             -> (itself)             Exit1
//   Exit1             -> Pause                Update
//   Pause             -> (itself)             Exit2
//   Exit2             -> Shift                Update
//   Update            -> Run-Test/Idle        Select-DR-Scan

#include <cstdint>
#include <optional>
#include <string_view>

namespace simulator {

enum class TapState : uint8_t {
    testLogicReset,
    runTestIdle,
    selectDrScan,
    captureDr,
    shiftDr,
    exit1Dr,
    pauseDr,
    exit2Dr,
    updateDr,
    selectIrScan,
    captureIr,
    shiftIr,
    exit1Ir,
    pauseIr,
    exit2Ir,
    updateIr,
};

// The state that a rising edge of TCK leads to.
TapState nextTapState(TapState state, bool tms);

// The state's standard name, and back; nothing for an unknown name.
std::string_view tapStateName(TapState state);
std::optional<TapState> tapStateNamed(std::string_view name);

}  // namespace simulator
