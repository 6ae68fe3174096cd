#pragma once

// The configuration PROM: what its instructions do to its cells, and how long that takes.
//
// Program, erase and leaving programming mode begin at Update-IR and then need their time in Run-Test/Idle.
// The cells hold a damaged row from the start and the good one once the time is up, so whatever ends the run
// in between leaves what a real PROM would hold.
//
// hw/PromPrograms repeats the same instructions, widths and times, on purpose: the updater must not learn
// them from the model that it is tried on.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/base/Clock.h"
#include "simulator/base/Faults.h"
#include "simulator/base/Ledger.h"
#include "simulator/jtag/JtagDevice.h"
#include "simulator/jtag/PromCells.h"

namespace simulator {

class Prom final : public JtagDevice {
  public:
    enum Instruction : uint8_t {
        programInstruction = 0xEA,
        addressInstruction = 0xEB,
        eraseInstruction = 0xEC,
        pageDataInstruction = 0xED,
        readPageInstruction = 0xEF,
        leaveProgrammingInstruction = 0xF0,
        controlDataInstruction = 0xF3,
        controlReadInstruction = 0xE2,
        enterProgrammingInstruction = 0xE8,
        userCodeInstruction = 0xFD,
        identificationInstruction = 0xFE,
        bypassInstruction = 0xFF,
    };
    static constexpr std::size_t kInstructionBits = 8;
    static constexpr std::size_t kModeBits = 6;
    static constexpr std::size_t kAddressBits = 16;
    static constexpr std::size_t kControlBits = 3;
    static constexpr std::size_t kUserCodeBits = 32;
    static constexpr std::size_t kIdentificationBits = 32;

    static constexpr uint32_t kIdentificationCode = 0xF5035093;
    static constexpr uint16_t kPageAddressStep = 0x20;
    static constexpr uint16_t kSpecialRowAddress = 0x8000;

    static constexpr uint32_t kProgramMicroseconds = 14'000;
    static constexpr uint32_t kEraseMicroseconds = 15'000'000;
    static constexpr uint32_t kLeaveProgrammingMicroseconds = 4'000;

    enum class Register : uint8_t { none, pageData, userCode, controlData };
    enum class Operation : uint8_t { none, program, erase, leaveProgramming };
    // The words for them in files.
    static constexpr std::array<std::string_view, 4> kRegisterNames{"none", "page data", "user code",
                                                                    "control data"};
    static constexpr std::array<std::string_view, 4> kOperationNames{"none", "program", "erase",
                                                                     "leave programming mode"};

    // What the PROM loses without power, apart from its JTAG registers.
    struct State {
        bool programmingMode = false;
        uint8_t mode = 0;
        uint16_t address = 0;
        std::array<uint8_t, kPageBytes> pageData{};
        uint32_t userCode = 0;
        uint8_t controlData = 0;
        Register loadedLast = Register::none;
        Operation operation = Operation::none;
        uint64_t doneAt = 0;  // access count at which the operation completes; 0 before Run-Test/Idle
    };

    // Clock and faults must outlive the PROM.
    Prom(Clock& clock, Faults& faults, PromCells cells, MisuseReport report);

    const PromCells& cells() const { return cells_; }
    PromCells& cells() { return cells_; }

    void losePower();
    // Completes the operation if its time is up, or else asks the clock for the next wake-up.
    void timePassed();

    // Whether Update-DR applies what was shifted in for the current instruction.
    bool loadsOnUpdate() const;

    const State& state() const { return state_; }
    void restore(const State& state);

  private:
    void captureData(ShiftRegister& data) override;
    void updateData(const ShiftRegister& data) override;
    void instructionUpdated() override;
    void tapMoved(TapState to) override;

    std::optional<std::size_t> pageAtAddress() const;
    // The row that a program instruction would write. The address and the register loaded last select it.
    std::optional<PromCells::Row> rowToProgram() const;
    std::string atAddress() const;
    // How much longer than the data sheet's time the current operation takes.
    uint64_t extraAccesses() const;
    void startProgram();
    void startErase();
    void complete();
    void breakOff();

    Clock& clock_;
    Faults& faults_;
    PromCells cells_;
    MisuseReport report_;
    State state_;
    uint64_t dueAt_ = 0;  // when the data sheet's time is up: before doneAt if a fault slows the PROM
};

}  // namespace simulator
