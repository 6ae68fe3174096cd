#pragma once

// A card's JTAG chain: TDI -> PROM -> FPGA -> TDO, driven by the levels of its signals.
//
// The order of the devices and the PROM's instructions are also written down in hw/, on purpose: both the
// updater and this model are written from the data sheet, so a mistake in one of them shows.

#include <cstdint>
#include <optional>

#include "simulator/jtag/Fpga.h"
#include "simulator/jtag/Prom.h"

namespace simulator {

class JtagChain {
  public:
    // What the chain itself loses without power.
    struct State {
        bool tck = false;
        uint64_t clocks = 0;  // rising edges since power-up
        // Bits shifted since the last capture, and whether an update came before they had filled a register.
        // It is misuse only once the TAP goes on to a state other than reset: on its way to a reset, the TAP
        // may pass through an update.
        uint64_t scanBits = 0;
        bool shortScan = false;
    };

    // Clock and faults must outlive the chain.
    JtagChain(Clock& clock, Faults& faults, PromCells cells, const MisuseReport& report);

    void losePower();

    // Applies the levels. Nothing happens unless TCK changes, which is an edge.
    void drive(bool tck, bool tms, bool tdi);
    bool tdo() const { return fpga_.tdo(); }

    Prom& prom() { return prom_; }
    const Prom& prom() const { return prom_; }
    Fpga& fpga() { return fpga_; }
    const Fpga& fpga() const { return fpga_; }
    const State& state() const { return state_; }
    void restore(const State& state) { state_ = state; }
    // Wakes the machine at the access after the rising edge with this number, counted from power-up.
    void wakeAfterClock(std::optional<uint64_t> clock) { wakeAfterClock_ = clock.value_or(0); }

  private:
    void watchScan(TapState before, TapState after);

    Prom prom_;
    Fpga fpga_;
    Clock& clock_;
    MisuseReport report_;
    State state_;
    uint64_t wakeAfterClock_ = 0;  // 0 for never
};

}  // namespace simulator
