#include "simulator/jtag/JtagDevice.h"

namespace simulator {
namespace {

// Every instruction register captures 01 in its lowest bits, so that a break in the chain shows.
constexpr uint32_t kCapturedInstruction = 0b01;

}  // namespace

void JtagDevice::losePower() {
    state_ = State{};
    state_.instruction = instructionAfterReset_;
}

void JtagDevice::risingEdge(bool tms, bool tdi) {
    const TapState before = state_.tap;
    switch (before) {
        case TapState::captureDr:
            captureData(state_.dataShift);
            break;
        case TapState::shiftDr:
            state_.dataShift.shift(tdi);
            break;
        case TapState::captureIr:
            state_.instructionShift.loadNumber(kCapturedInstruction, instructionBits_);
            break;
        case TapState::shiftIr:
            state_.instructionShift.shift(tdi);
            break;
        default:
            break;
    }
    state_.tap = nextTapState(before, tms);
    if (state_.tap != before) {
        tapMoved(state_.tap);
    }
}

void JtagDevice::fallingEdge() {
    state_.tdo = true;
    switch (state_.tap) {
        case TapState::testLogicReset:
            state_.instruction = instructionAfterReset_;
            break;
        case TapState::shiftDr:
            state_.tdo = state_.dataShift.bottom();
            break;
        case TapState::updateDr:
            updateData(state_.dataShift);
            break;
        case TapState::shiftIr:
            state_.tdo = state_.instructionShift.bottom();
            break;
        case TapState::updateIr:
            state_.instruction = state_.instructionShift.number();
            instructionUpdated();
            break;
        default:
            break;
    }
}

}  // namespace simulator
