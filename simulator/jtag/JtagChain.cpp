#include "simulator/jtag/JtagChain.h"

#include <utility>

namespace simulator {

JtagChain::JtagChain(Clock& clock, Faults& faults, PromCells cells, const MisuseReport& report)
    : prom_(clock, faults, std::move(cells), report), clock_(clock), report_(report) {}

void JtagChain::losePower() {
    prom_.losePower();
    fpga_.losePower();
    state_ = State{};
}

void JtagChain::drive(bool tck, bool tms, bool tdi) {
    if (tck == state_.tck) {
        return;
    }
    state_.tck = tck;
    if (!tck) {
        prom_.fallingEdge();
        fpga_.fallingEdge();
        return;
    }
    if (++state_.clocks == wakeAfterClock_) {
        clock_.wakeAt(clock_.accesses());
    }
    const TapState before = prom_.tap();
    fpga_.risingEdge(tms, prom_.tdo());
    prom_.risingEdge(tms, tdi);
    watchScan(before, prom_.tap());
}

void JtagChain::watchScan(TapState before, TapState after) {
    if (before == TapState::shiftDr || before == TapState::shiftIr) {
        ++state_.scanBits;
    }
    if (after == before) {
        return;
    }
    switch (after) {
        case TapState::updateIr:
            state_.shortScan = state_.scanBits < prom_.instructionBits() + fpga_.instructionBits();
            break;
        case TapState::updateDr:
            state_.shortScan = prom_.loadsOnUpdate() && state_.scanBits < prom_.dataBits() + fpga_.dataBits();
            break;
        case TapState::testLogicReset:
            state_.shortScan = false;
            break;
        case TapState::captureDr:
        case TapState::captureIr:
            state_.scanBits = 0;
            [[fallthrough]];
        case TapState::runTestIdle:
            if (state_.shortScan) {
                report_(Misuse::shortScan, "A register was updated by a scan too short to fill it.");
            }
            state_.shortScan = false;
            break;
        default:
            break;
    }
}

}  // namespace simulator
