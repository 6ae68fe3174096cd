#pragma once

// The FPGA as the chain sees it: one bypass bit, whatever the instruction.

#include "simulator/jtag/JtagDevice.h"

namespace simulator {

class Fpga final : public JtagDevice {
  public:
    static constexpr std::size_t kInstructionBits = 5;
    static constexpr uint32_t kBypass = 0x1F;

    Fpga() : JtagDevice(kInstructionBits, kBypass) {}

    using JtagDevice::losePower;

  private:
    void captureData(ShiftRegister& data) override { data.loadNumber(0, 1); }
};

}  // namespace simulator
