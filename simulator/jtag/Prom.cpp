#include "simulator/jtag/Prom.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

namespace simulator {
namespace {

constexpr std::size_t kPageBits = kPageBytes * 8;
static_assert(kPageBits <= ShiftRegister::kMostBits);
constexpr uint8_t kMisreadBit = 0x80;  // of the last byte, so the very last bit that is shifted out

struct Timing {
    const char* name;
    uint32_t microseconds;
};

Timing timingOf(Prom::Operation operation) {
    switch (operation) {
        case Prom::Operation::program:
            return {"Program", Prom::kProgramMicroseconds};
        case Prom::Operation::erase:
            return {"Erase", Prom::kEraseMicroseconds};
        case Prom::Operation::leaveProgramming:
            return {"Leaving programming mode", Prom::kLeaveProgrammingMicroseconds};
        case Prom::Operation::none:
            break;
    }
    return {"Nothing", 0};
}

}  // namespace

Prom::Prom(Clock& clock, Faults& faults, PromCells cells, MisuseReport report)
    : JtagDevice(kInstructionBits, identificationInstruction),
      clock_(clock),
      faults_(faults),
      cells_(std::move(cells)),
      report_(std::move(report)) {
    losePower();
}

void Prom::losePower() {
    JtagDevice::losePower();
    state_ = State{};
}

void Prom::restore(const State& state) {
    state_ = state;
    if (state_.doneAt == 0) {
        return;
    }
    dueAt_ = state_.doneAt - std::min(state_.doneAt, extraAccesses());
    clock_.wakeAt(state_.doneAt);
}

bool Prom::loadsOnUpdate() const {
    switch (instruction()) {
        case enterProgrammingInstruction:
        case addressInstruction:
        case pageDataInstruction:
        case userCodeInstruction:
        case controlDataInstruction:
            return true;
        default:
            return false;
    }
}

void Prom::captureData(ShiftRegister& data) {
    switch (instruction()) {
        case identificationInstruction:
            return data.loadNumber(faults_.foreignIdentification().value_or(kIdentificationCode),
                                   kIdentificationBits);
        case userCodeInstruction:
            return data.loadNumber(cells_.userCode(), kUserCodeBits);
        case enterProgrammingInstruction:
            return data.loadNumber(state_.mode, kModeBits);
        case addressInstruction:
            return data.loadNumber(state_.address, kAddressBits);
        case pageDataInstruction:
            return data.load(state_.pageData, kPageBits);
        case controlDataInstruction:
            return data.loadNumber(state_.controlData, kControlBits);
        case controlReadInstruction:
            return data.loadNumber(cells_.protection(), kControlBits);
        case readPageInstruction: {
            std::array<uint8_t, kPageBytes> content{};
            content.fill(0xFF);  // what an address without a page reads as
            if (const auto page = pageAtAddress()) {
                std::ranges::copy(cells_.bytesOf(PromCells::page(*page)), content.begin());
                if (faults_.consumeMisread(*page)) {
                    content.back() ^= kMisreadBit;
                }
            }
            return data.load(content, kPageBits);
        }
        default:
            return data.loadNumber(0, 1);
    }
}

void Prom::updateData(const ShiftRegister& data) {
    switch (instruction()) {
        case enterProgrammingInstruction:
            state_.mode = static_cast<uint8_t>(data.number());
            state_.programmingMode = true;
            break;
        case addressInstruction:
            state_.address = static_cast<uint16_t>(data.number());
            break;
        case pageDataInstruction:
            data.copyTo(state_.pageData);
            state_.loadedLast = Register::pageData;
            break;
        case userCodeInstruction:
            state_.userCode = data.number();
            state_.loadedLast = Register::userCode;
            break;
        case controlDataInstruction:
            state_.controlData = static_cast<uint8_t>(data.number());
            state_.loadedLast = Register::controlData;
            break;
        default:
            break;
    }
}

void Prom::instructionUpdated() {
    switch (instruction()) {
        case programInstruction:
            return startProgram();
        case eraseInstruction:
            return startErase();
        case leaveProgrammingInstruction:
            if (state_.programmingMode) {
                state_.operation = Operation::leaveProgramming;
            }
            return;
        default:
            return;
    }
}

void Prom::tapMoved(TapState to) {
    if (state_.operation == Operation::none) {
        return;
    }
    if (to == TapState::runTestIdle) {
        // What the program owes, and what this PROM takes: they differ while a fault slows it.
        const uint64_t microseconds = timingOf(state_.operation).microseconds;
        dueAt_ = clock_.accesses() + microseconds * Clock::kAccessesPerMicrosecond;
        state_.doneAt = dueAt_ + extraAccesses();
        clock_.wakeAt(state_.doneAt);
    } else {
        breakOff();
    }
}

void Prom::timePassed() {
    if (state_.doneAt == 0) {
        return;
    }
    if (clock_.accesses() >= state_.doneAt) {
        complete();
    } else {
        clock_.wakeAt(state_.doneAt);
    }
}

std::optional<std::size_t> Prom::pageAtAddress() const {
    if (state_.address % kPageAddressStep != 0 || state_.address / kPageAddressStep >= kPromPages) {
        return std::nullopt;
    }
    return state_.address / kPageAddressStep;
}

std::optional<PromCells::Row> Prom::rowToProgram() const {
    const bool special = state_.address == kSpecialRowAddress;
    const auto page = pageAtAddress();
    switch (state_.loadedLast) {
        case Register::pageData:
            return page ? std::optional(PromCells::page(*page)) : std::nullopt;
        case Register::userCode:
            return special ? std::optional(PromCells::kUserCode) : std::nullopt;
        case Register::controlData:
            return special ? std::optional(PromCells::kProtection) : std::nullopt;
        case Register::none:
            break;
    }
    return std::nullopt;
}

std::string Prom::atAddress() const {
    std::array<char, sizeof " at address 0xFFFF"> text{};
    (void)std::snprintf(text.data(), text.size(), " at address 0x%04X", unsigned{state_.address});
    return text.data();
}

void Prom::startProgram() {
    if (!state_.programmingMode) {
        return report_(Misuse::outsideProgrammingMode,
                       "Program" + atAddress() + " was asked for outside programming mode.");
    }
    const auto row = rowToProgram();
    if (!row) {
        return report_(Misuse::noSuchRow,
                       "Program" + atAddress() + " has no row for the data register loaded last.");
    }
    if (state_.loadedLast == Register::pageData && !cells_.isPageErased(*pageAtAddress())) {
        report_(Misuse::programmedTwice,
                "The page" + atAddress() + " was programmed again without an erase.");
    }

    if (state_.loadedLast == Register::pageData) {
        if (faults_.takesPage(*pageAtAddress())) {
            cells_.programPage(*pageAtAddress(), state_.pageData);
        }
    } else if (state_.loadedLast == Register::userCode) {
        if (!faults_.hasStruck(FaultKind::userCodeNotTaken)) {
            cells_.setUserCode(state_.userCode);
        }
    } else {
        cells_.setProtection(state_.controlData);
    }
    cells_.toggleDamage(*row);
    state_.operation = Operation::program;
}

void Prom::startErase() {
    if (!state_.programmingMode) {
        return report_(Misuse::outsideProgrammingMode, "Erase was asked for outside programming mode.");
    }
    cells_.erase();
    cells_.toggleDamage(PromCells::kEverything);
    state_.operation = Operation::erase;
}

uint64_t Prom::extraAccesses() const {
    if (state_.operation != Operation::program) {
        return 0;
    }
    return uint64_t{faults_.programmingFactor() - 1} * kProgramMicroseconds * Clock::kAccessesPerMicrosecond;
}

void Prom::complete() {
    // The row is still the one that was started: nothing that decides it changes in Run-Test/Idle.
    if (const auto row = rowToProgram(); row && state_.operation == Operation::program) {
        cells_.toggleDamage(*row);
    } else if (state_.operation == Operation::erase) {
        cells_.toggleDamage(PromCells::kEverything);
    } else if (state_.operation == Operation::leaveProgramming) {
        state_.programmingMode = false;
    }
    state_.operation = Operation::none;
    state_.doneAt = 0;
}

void Prom::breakOff() {
    const auto [name, microseconds] = timingOf(state_.operation);
    const std::string where = state_.operation == Operation::program ? atAddress() : "";
    // Only the data sheet's time is owed: a PROM that a fault makes slower is not the program's misuse.
    if (state_.doneAt == 0 || clock_.accesses() < dueAt_) {
        report_(Misuse::shortWait,
                name + where + " was given less than " + std::to_string(microseconds) + " microseconds.");
    }
    state_.operation = Operation::none;
    state_.doneAt = 0;
}

}  // namespace simulator
