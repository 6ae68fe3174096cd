#pragma once

// One device of a JTAG chain: its TAP controller, its instruction register and the data register that the
// instruction selects. Derived classes give the instructions their meaning.
//
// Registers capture and shift on TCK's rising edge. On its falling edge, instructions and data take effect
// and TDO changes. Outside the Shift states TDO floats, and so reads high.

#include <cstddef>
#include <cstdint>

#include "simulator/jtag/ShiftRegister.h"
#include "simulator/jtag/TapController.h"

namespace simulator {

class JtagDevice {
  public:
    // Everything that is lost without power.
    struct State {
        TapState tap = TapState::testLogicReset;
        uint32_t instruction = 0;
        bool tdo = true;
        ShiftRegister instructionShift;
        ShiftRegister dataShift;
    };

    JtagDevice(std::size_t instructionBits, uint32_t instructionAfterReset)
        : instructionBits_(instructionBits), instructionAfterReset_(instructionAfterReset) {
        losePower();
    }
    JtagDevice(const JtagDevice&) = delete;
    JtagDevice& operator=(const JtagDevice&) = delete;
    virtual ~JtagDevice() = default;

    // TCK's edges, which alternate, with the signals' levels at the rising one.
    void risingEdge(bool tms, bool tdi);
    void fallingEdge();
    bool tdo() const { return state_.tdo; }

    TapState tap() const { return state_.tap; }
    uint32_t instruction() const { return state_.instruction; }
    std::size_t instructionBits() const { return instructionBits_; }
    std::size_t dataBits() const { return state_.dataShift.bits(); }  // of the last capture

    const State& jtagState() const { return state_; }
    void restoreJtag(const State& state) { state_ = state; }

  protected:
    void losePower();

    // Fills the data register that the present instruction selects.
    virtual void captureData(ShiftRegister& data) = 0;
    // Takes what was shifted in.
    virtual void updateData(const ShiftRegister&) {}
    // A new instruction was shifted in. Not called by a reset.
    virtual void instructionUpdated() {}
    // The controller went from one state to a different one.
    virtual void tapMoved(TapState) {}

  private:
    const std::size_t instructionBits_;
    const uint32_t instructionAfterReset_;
    State state_;
};

}  // namespace simulator
