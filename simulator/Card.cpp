#include "simulator/Card.h"

#include <utility>

namespace simulator {
namespace {

// "VO" in the low half is what drivers look for; "MX" above it reads as neither when the order is wrong.
constexpr uint32_t kByteOrderIdentification = 0x4D58564F;

uint32_t byteReversed(uint32_t value) {
    return value >> 24 | (value >> 8 & 0xFF00) | (value << 8 & 0xFF0000) | value << 24;
}

}  // namespace

Card::Card(Board board, PromCells cells, Clock& clock, Ledger& ledger)
    : board_(std::move(board)),
      chain_(clock, std::move(cells), [this, &clock, &ledger](Misuse misuse, const std::string& detail) {
          ledger.record(misuse, board_.name, detail, clock.accesses());
      }) {}

std::optional<FpgaConfiguration> Card::acceptableConfiguration() const {
    const auto found = decodeConfiguration(cells().pages());
    return found && found->modelCode == board_.modelCode ? found : std::nullopt;
}

void Card::powerUp() {
    chain_.powerUp();
    resume(acceptableConfiguration(), 0);
}

void Card::powerOff() {
    chain_.powerUp();  // what it loses shows no earlier than the next power-up
    running_.reset();
    presentRegisters();
}

void Card::resume(const std::optional<FpgaConfiguration>& running, uint32_t jtagOutput) {
    running_ = running;
    jtagOutput_ = jtagOutput;
    presentRegisters();
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
    if (offset != registers::kJtagOutput || !running_)
        return;
    registers_.put(offset, word);
    jtagOutput_ = inCardsOrder(word);
    chain_.drive((jtagOutput_ & registers::kTck) != 0, (jtagOutput_ & registers::kTms) != 0,
                 (jtagOutput_ & registers::kTdi) != 0);
    presentTdo();
}

uint32_t Card::inCardsOrder(uint32_t value) const {
    return running_->flavour == 'M' ? value : byteReversed(value);
}

void Card::presentRegisters() {
    if (!running_) {
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
    presentTdo();
}

void Card::presentTdo() {
    registers_.put(registers::kJtagInput, inCardsOrder(chain_.tdo() ? registers::kTdo : 0));
}

}  // namespace simulator
