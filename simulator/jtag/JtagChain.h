#pragma once

// A card's JTAG chain: TDI -> PROM -> FPGA -> TDO, clocked by levels.

#include <cstdint>
#include <optional>

#include "simulator/jtag/Fpga.h"
#include "simulator/jtag/Prom.h"

namespace simulator {

class JtagChain {
  public:
    // What the chain itself remembers while it has power.
    struct State {
        bool tck = false;
        uint64_t clocks = 0;  // rising edges since power-up
        // Bits shifted since the last capture, and whether an update came before they had filled a register.
        // Only a scan that carries on counts as misuse: a reset on its way through an update is in order.
        uint64_t scanBits = 0;
        bool shortScan = false;
    };

    // Clock and faults must outlive the chain.
    JtagChain(Clock& clock, Faults& faults, PromCells cells, const MisuseReport& report);

    void losePower();

    // Applies the levels. A change of TCK is an edge; without one nothing happens.
    void drive(bool tck, bool tms, bool tdi);
    bool tdo() const { return fpga_.tdo(); }

    Prom& prom() { return prom_; }
    const Prom& prom() const { return prom_; }
    Fpga& fpga() { return fpga_; }
    const Fpga& fpga() const { return fpga_; }
    const State& state() const { return state_; }
    void restore(const State& state) { state_ = state; }
    // Wakes the machine up at the access that follows a rising edge, given by its number since power-up.
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
