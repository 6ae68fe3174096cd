#include "simulator/machine/Card.h"

#include <utility>

namespace simulator {
namespace {

// Drivers look for "VO" in the low half. "MX" above it is something else in either byte order.
constexpr uint32_t kByteOrderIdentification = 0x4D58564F;

uint32_t byteReversed(uint32_t value) {
    return value >> 24 | (value >> 8 & 0xFF00) | (value << 8 & 0xFF0000) | value << 24;
}

}  // namespace

Card::Card(Board board, PromCells cells, Clock& clock, Ledger& ledger, MachineFaults machineFaults)
    : board_(std::move(board)),
      clock_(clock),
      machineFaults_(std::move(machineFaults)),
      chain_(clock, faults_, std::move(cells),
             [this, &clock, &ledger](Misuse misuse, const std::string& detail) {
                 ledger.record(misuse, board_.name, detail, clock.accesses());
             }) {}

void Card::setBoard(Board board) {
    board.modelCode = board_.modelCode;
    board_ = std::move(board);
    presentRegisters();
}

std::optional<FpgaConfiguration> Card::acceptableConfiguration() const {
    const auto found = decodeConfiguration(cells().pages());
    return found && found->modelCode == board_.modelCode ? found : std::nullopt;
}

void Card::powerUp() {
    resume(acceptableConfiguration(), 0);
}

void Card::powerOff() {
    chain_.losePower();
    running_.reset();
    hasPower_ = false;
    presentRegisters();
}

void Card::resume(const std::optional<FpgaConfiguration>& running, uint32_t jtagOutput) {
    running_ = running;
    jtagOutput_ = jtagOutput;
    hasPower_ = true;
    meetFaults();
}

void Card::timePassed() {
    chain_.prom().timePassed();
    if (!hasPower_ || faults_.all().empty()) {
        return;
    }
    const bool powerWasLost = faults_.hasStruck(FaultKind::powerLost);
    const bool hadSlept = faults_.hasStruck(FaultKind::machineSleeps);
    const bool anyStruck = faults_.strike(clock_.accesses(), chain_.state().clocks);
    if (anyStruck) {
        meetFaults();
    }
    if (const auto access = faults_.nextCount(Fault::When::atAccess)) {
        clock_.wakeAt(*access);
    }
    chain_.wakeAfterClock(faults_.nextCount(Fault::When::atClock));
    strikeMachine(!powerWasLost && faults_.hasStruck(FaultKind::powerLost),
                  !hadSlept && faults_.hasStruck(FaultKind::machineSleeps));
}

void Card::strikeMachine(bool losesPower, bool sleeps) {
    if (losesPower) {
        machineFaults_.losePower();
    } else if (sleeps && !machineFaults_.sleep()) {
        faults_.notePrevented(FaultKind::machineSleeps);
    }
}

void Card::inject(const Fault& fault) {
    faults_.add(fault);
    meetFaults();  // it may have replaced one that had struck
    timePassed();
}

std::size_t Card::clearFaults(std::optional<FaultKind> kind) {
    std::size_t cleared = 0;
    if (kind) {
        cleared = faults_.remove(*kind);
    } else {
        cleared = faults_.all().size();
        faults_.restore({});
    }
    meetFaults();
    return cleared;
}

void Card::meetFaults() {
    heldHigh_ = faults_.hasStruck(FaultKind::chainBroken) ? registers::kTdi : 0;
    presentRegisters();
}

void Card::beginRecording() {
    if (!recordingRequest_) {
        return;
    }
    recording_ = std::make_unique<Waveform>(*recordingRequest_, clock_.accesses(), jtagLevels());
    recordingRequest_.reset();
}

void Card::endRecording() {
    if (const auto recording = std::move(recording_)) {
        recording->end(clock_.accesses());
    }
}

JtagLevels Card::jtagLevels() const {
    if (!answers_) {
        return {};
    }
    const auto output = [this](uint32_t signal) { return (jtagOutput_ & signal) != 0; };
    return {.answers = true,
            .tck = output(registers::kTck),
            .tms = output(registers::kTms),
            .tdi = output(registers::kTdi),
            .tdo = (inCardsOrder(registers_.at(registers::kJtagInput)) & registers::kTdo) != 0,
            .activity = output(registers::kActivityLamp),
            .promTap = chain_.prom().tap(),
            .fpgaTap = chain_.fpga().tap()};
}

RegisterWindow* Card::window(uint32_t memoryType) {
    switch (memoryType) {
        case 0:
            return &registers_;
        case 1:
            return &memory_;
        default:
            return nullptr;
    }
}

void Card::storeRegister(uint32_t offset, uint32_t word) {
    if (offset != registers::kJtagOutput || !answers_) {
        return;
    }
    registers_.put(offset, word);
    jtagOutput_ = inCardsOrder(word);
    chain_.drive((jtagOutput_ & registers::kTck) != 0, (jtagOutput_ & registers::kTms) != 0,
                 ((jtagOutput_ | heldHigh_) & registers::kTdi) != 0);
    presentTdo();
    if (recording_ != nullptr) {
        [[unlikely]] recordLevels();
    }
}

uint32_t Card::inCardsOrder(uint32_t value) const {
    return running_->flavour == 'M' ? value : byteReversed(value);
}

void Card::presentRegisters() {
    fillRegisters();
    if (recording_ != nullptr) {
        recordLevels();
    }
}

void Card::fillRegisters() {
    answers_ = running_.has_value() && !faults_.hasStruck(FaultKind::cardVanished);
    if (!answers_) {
        registers_.fill(RegisterWindow::kNobodyAnswers);
        memory_.fill(RegisterWindow::kNobodyAnswers);
        return;
    }
    registers_.fill(0);
    memory_.fill(0);
    registers_.put(registers::kByteOrder, inCardsOrder(kByteOrderIdentification));
    registers_.put(registers::kModelCode, inCardsOrder(board_.modelCode));
    registers_.put(registers::kBoardRevision, inCardsOrder(board_.revision));
    registers_.put(registers::kFirmwareVersion, inCardsOrder(running_->version));
    registers_.put(registers::kFirmwareDate, inCardsOrder(running_->date));
    registers_.put(registers::kJtagOutput, inCardsOrder(jtagOutput_));

    const bool floats =
        faults_.hasStruck(FaultKind::tdoStuckHigh) || faults_.hasStruck(FaultKind::chainBroken);
    const bool sinks = faults_.hasStruck(FaultKind::tdoStuckLow);
    const uint32_t high = inCardsOrder(registers::kTdo);
    tdoRegisters_ = {floats && !sinks ? high : 0, sinks ? 0 : high};
    presentTdo();
}

void Card::presentTdo() {
    registers_.put(registers::kJtagInput, tdoRegisters_[chain_.tdo() ? 1 : 0]);
}

}  // namespace simulator
