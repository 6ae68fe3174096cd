#pragma once

// A card: a board with a PROM and an FPGA, seen from the bus.
//
//   offset  register
//    0x000  byte-order identification: 0x564F in the low half, something else in the high half
//    0x008  model code
//    0x00C  board revision
//    0x010  firmware version
//    0x014  firmware date
//    0x100  JTAG output: bit 6 TCK, bit 5 TMS, bit 4 TDI, bit 3 the activity lamp; reads back what was
//           written
//    0x108  JTAG input: bit 7 TDO
//
// The updater has its own map, in card/Registers.h and hw/JtagPort.h, so that a mistake in either shows.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "simulator/base/Clock.h"
#include "simulator/base/Faults.h"
#include "simulator/base/Ledger.h"
#include "simulator/jtag/FpgaConfiguration.h"
#include "simulator/jtag/JtagChain.h"
#include "simulator/jtag/PromCells.h"
#include "simulator/jtag/Waveform.h"
#include "simulator/machine/RegisterWindow.h"

namespace simulator {

namespace registers {
constexpr uint32_t kByteOrder = 0x000;
constexpr uint32_t kModelCode = 0x008;
constexpr uint32_t kBoardRevision = 0x00C;
constexpr uint32_t kFirmwareVersion = 0x010;
constexpr uint32_t kFirmwareDate = 0x014;
constexpr uint32_t kJtagOutput = 0x100;
constexpr uint32_t kJtagInput = 0x108;

constexpr uint32_t kTck = 0x40;
constexpr uint32_t kTms = 0x20;
constexpr uint32_t kTdi = 0x10;
constexpr uint32_t kActivityLamp = 0x08;
constexpr uint32_t kTdo = 0x80;
}  // namespace registers

// The hardware and where it is plugged in. No firmware changes it.
struct Board {
    std::string name;
    std::string location;
    uint8_t modelCode;  // of a model in catalogue/CardModels.h
    uint8_t revision;   // 0 none, 1 A, 2 B, ...
};

class Card {
  public:
    static constexpr uint32_t kRegisterBytes = 0x200;  // memory range 0
    static constexpr uint32_t kMemoryBytes = 0x1000;   // memory range 1: reads 0, ignores stores

    // What a card's fault does to the whole machine, this card included.
    struct MachineFaults {
        std::function<void()> losePower;
        std::function<bool()> sleep;  // false, having done nothing, if that is prevented
    };

    // A card without power. Clock and ledger must outlive it.
    Card(Board board, PromCells cells, Clock& clock, Ledger& ledger, MachineFaults machineFaults);
    Card(const Card&) = delete;
    Card& operator=(const Card&) = delete;

    const Board& board() const { return board_; }
    // Replaces the board's data, except the model code.
    void setBoard(Board board);
    // The configuration that the FPGA loaded at power-up; nothing without power or without a valid one.
    const std::optional<FpgaConfiguration>& running() const { return running_; }
    // The identity is the PROM's user code.
    uint32_t identity() const { return cells().userCode(); }
    uint8_t protection() const { return cells().protection(); }
    const PromCells& cells() const { return chain_.prom().cells(); }
    PromCells& cells() { return chain_.prom().cells(); }
    // For saving and restoring the chain, and for looking at it. Only storeRegister() drives it.
    const JtagChain& chain() const { return chain_; }
    JtagChain& chain() { return chain_; }

    // The configuration that the FPGA would load from the PROM now; nothing if there is no valid one.
    std::optional<FpgaConfiguration> acceptableConfiguration() const;

    // Called by the machine alone, for all cards. powerUp() lets the FPGA load its configuration, and then
    // timePassed() must be called, so that faults which are due strike.
    void powerUp();
    void powerOff();
    // Continues with a configuration that was loaded at an earlier power-up. Restore the chain first.
    void resume(const std::optional<FpgaConfiguration>& running, uint32_t jtagOutput);
    // Completes the PROM's operation and triggers the faults that are due.
    void timePassed();

    const Faults& faults() const { return faults_; }
    // A fault whose moment has passed strikes at once, if there is power.
    void inject(const Fault& fault);
    // Restores the faults of an earlier run. Call before resume().
    void restoreFaults(std::vector<Fault> faults) { faults_.restore(std::move(faults)); }
    // Removes the faults of one kind, or all of them. Returns how many.
    std::size_t clearFaults(std::optional<FaultKind> kind = std::nullopt);

    // What to record of the next run. beginRecording() consumes it and creates the file, or throws and keeps
    // it.
    const std::optional<RecordingRequest>& recordingRequest() const { return recordingRequest_; }
    void requestRecording(std::optional<RecordingRequest> request) { recordingRequest_ = std::move(request); }
    void beginRecording();
    // Throws files::UserError if not everything could be written.
    void endRecording();

    // The number last written to the JTAG output, whatever the card's byte order.
    uint32_t jtagOutput() const { return jtagOutput_; }

    // Memory range 0 or 1; null for any other. It lives as long as the card. Loads read the window itself.
    // Stores to range 0 must go to storeRegister; those to range 1 have no effect.
    RegisterWindow* window(uint32_t memoryType);
    void storeRegister(uint32_t offset, uint32_t word);

  private:
    uint32_t inCardsOrder(uint32_t value) const;
    void presentRegisters();
    void fillRegisters();
    void presentTdo();
    void meetFaults();
    // Does what the faults of the machine that strike now do to it.
    void strikeMachine(bool losesPower, bool sleeps);
    JtagLevels jtagLevels() const;
    [[gnu::noinline]] void recordLevels() { recording_->sample(clock_.accesses(), jtagLevels()); }

    Board board_;
    Clock& clock_;
    MachineFaults machineFaults_;
    Faults faults_;
    JtagChain chain_;
    RegisterWindow registers_{kRegisterBytes};
    RegisterWindow memory_{kMemoryBytes};
    std::optional<FpgaConfiguration> running_;
    uint32_t jtagOutput_ = 0;
    uint32_t heldHigh_ = 0;  // JTAG output signals that a fault keeps high
    bool hasPower_ = false;
    bool answers_ = false;  // on the bus
    std::optional<RecordingRequest> recordingRequest_;
    std::unique_ptr<Waveform> recording_;     // null if nothing is recorded
    std::array<uint32_t, 2> tdoRegisters_{};  // what the JTAG input register reads while TDO is 0, and 1
};

}  // namespace simulator
