#include "simulator/jtag/TapController.h"

#include <gtest/gtest.h>

namespace simulator {

using enum TapState;

TEST(TapControllerTest, FollowsTmsThroughAllStates) {
    const struct {
        TapState from, low, high;
        const char* name;
    } kSteps[] = {
        {testLogicReset, runTestIdle, testLogicReset, "Test-Logic-Reset"},
        {runTestIdle, runTestIdle, selectDrScan, "Run-Test/Idle"},
        {selectDrScan, captureDr, selectIrScan, "Select-DR-Scan"},
        {captureDr, shiftDr, exit1Dr, "Capture-DR"},
        {shiftDr, shiftDr, exit1Dr, "Shift-DR"},
        {exit1Dr, pauseDr, updateDr, "Exit1-DR"},
        {pauseDr, pauseDr, exit2Dr, "Pause-DR"},
        {exit2Dr, shiftDr, updateDr, "Exit2-DR"},
        {updateDr, runTestIdle, selectDrScan, "Update-DR"},
        {selectIrScan, captureIr, testLogicReset, "Select-IR-Scan"},
        {captureIr, shiftIr, exit1Ir, "Capture-IR"},
        {shiftIr, shiftIr, exit1Ir, "Shift-IR"},
        {exit1Ir, pauseIr, updateIr, "Exit1-IR"},
        {pauseIr, pauseIr, exit2Ir, "Pause-IR"},
        {exit2Ir, shiftIr, updateIr, "Exit2-IR"},
        {updateIr, runTestIdle, selectDrScan, "Update-IR"},
    };
    for (const auto& step : kSteps) {
        EXPECT_EQ(nextTapState(step.from, false), step.low) << step.name;
        EXPECT_EQ(nextTapState(step.from, true), step.high) << step.name;
        EXPECT_EQ(tapStateName(step.from), step.name);
        EXPECT_EQ(tapStateNamed(step.name), step.from);
    }
    EXPECT_FALSE(tapStateNamed("Shift"));
}

}  // namespace simulator
