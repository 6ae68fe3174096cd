#include "xsvf/TapMoves.h"

#include "xsvf/Format.h"
#include "xsvf/JtagPort.h"

namespace {

bool sharesRegister(uint8_t state, uint8_t other) {
    return (state & other & kTapRegisterFlags) != 0;
}

void step(int16_t tms, const char* label) {
    xsvfTmsTransition(tms, label, 0);
}

void reset() {
    step(1, "RESET");
    for (int clocks = 1; clocks < 5; ++clocks) {
        pulseClock();
    }
}

// Leaves a scan as far as Update; or, if it is only paused and continues, goes back to its Shift state.
// Returns the state code from which the walk continues.
uint8_t leaveScan(uint8_t current, uint8_t target) {
    if ((current & kTapPauseFlag) != 0 && sharesRegister(current, target)) {
        step(1, "EXIT2");
        step(0, "SHIFT");
        return target;
    }
    step(1, "EXIT");
    step(1, "UPDATE");
    return current;
}

void enterScan(uint8_t current, uint8_t target) {
    if (current == kTapTestLogicReset) {
        step(0, "RUNTEST");
    }
    step(1, "SELECTDR");
    if ((target & kTapInstructionFlag) != 0) {
        step(1, "SELECTIR");
    }
    step(0, "CAPTURE");
    step(0, "SHIFT");
}

int32_t pause(uint8_t current, uint8_t target) {
    if ((current & kTapShiftFlag) == 0 || !sharesRegister(current, target)) {
        return kXsvfIllegalState;
    }
    step(1, "EXIT1");
    step(0, "PAUSE");
    return kXsvfNoError;
}

int32_t walk(uint8_t current, uint8_t target) {
    if (target == kTapTestLogicReset) {
        reset();
        return kXsvfNoError;
    }
    if (target == current) {
        return kXsvfNoError;
    }
    if ((target & kTapPauseFlag) != 0) {
        return pause(current, target);
    }
    if ((current & (kTapPauseFlag | kTapShiftFlag)) != 0) {
        current = leaveScan(current, target);
    }
    if (target == kTapRunTestIdle) {
        step(0, "RUNTEST");
    } else if (target != current) {
        enterScan(current, target);
    }
    return kXsvfNoError;
}

}  // namespace

void xsvfTmsTransition(int16_t tms, const char*, int32_t) {
    setPort(kPortTMS, tms);
    pulseClock();
}

int32_t xsvfGotoTapState(uint8_t* state, uint8_t target) {
    const int32_t error = walk(*state, target);
    *state = target;
    return error;
}
