#include "simulator/machine/Machine.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "files/OutputFile.h"
#include "files/UserError.h"

namespace simulator {
namespace {

constexpr const char* kLoginProcess = "loginwindow";

}  // namespace

Machine::Machine() {
    clock_.onWake([this] { timePassed(); });
}

void Machine::timePassed() {
    for (const auto& card : cards_) {
        card->timePassed();
    }
}

Card& Machine::addCard(Board board, PromCells cells) {
    assert(!on_);
    return *cards_.emplace_back(std::make_unique<Card>(
        std::move(board), std::move(cells), clock_, ledger_,
        Card::MachineFaults{.losePower = [this] { losePower(); }, .sleep = [this] { return sleep(); }}));
}

std::string Machine::freeSlot() const {
    for (std::size_t slot = 1;; ++slot) {
        std::string location = "PCI slot " + std::to_string(slot);
        const auto isThere = [&](const auto& card) { return card->board().location == location; };
        if (std::ranges::none_of(cards_, isThere)) {
            return location;
        }
    }
}

void Machine::removeCard(std::size_t index) {
    assert(!on_ && index < cards_.size());
    cards_.erase(cards_.begin() + static_cast<std::ptrdiff_t>(index));
}

void Machine::powerOn() {
    if (!std::exchange(on_, true)) {
        powerUpCards();
    }
}

void Machine::powerUpCards() {
    for (const auto& card : cards_) {
        card->powerUp();
    }
    timePassed();  // only now that all are up, since a fault can switch them off again
}

void Machine::powerOff() {
    if (!std::exchange(on_, false)) {
        return;
    }
    drivers_.loaded.clear();
    for (const auto& card : cards_) {
        card->powerOff();
    }
}

void Machine::losePower() {
    powerOff();
    if (programEnds_) {
        programEnds_();
    }
}

bool Machine::sleep() {
    if (sleepIsPrevented_) {
        return false;
    }
    for (const auto& card : cards_) {
        card->powerOff();
    }
    powerUpCards();
    return true;
}

void Machine::resume() {
    on_ = true;
    timePassed();
}

void Machine::beginRecordings() {
    std::vector<std::string> taken;
    for (const auto& card : cards_) {
        if (const auto& request = card->recordingRequest()) {
            const auto isSame = [&](const std::string& file) {
                return files::isSameFile(file, request->file);
            };
            if (std::ranges::any_of(taken, isSame)) {
                throw files::UserError(request->file + ": two cards are to be recorded there.");
            }
            taken.push_back(request->file);
        }
    }
    for (const auto& card : cards_) {
        card->beginRecording();
    }
}

void Machine::endRecordings() {
    for (const auto& card : cards_) {
        card->endRecording();
    }
}

std::vector<Host::Process> Machine::processes() const {
    if (!on_) {
        return {};
    }
    return {{0x40001, "WindowServer"},    {0x80001, kLoginProcess}, {0xC0001, "Dock"},
            {0x100001, "SystemUIServer"}, {0x140001, "Finder"},     {0x180001, "VUpdater"}};
}

bool Machine::deliverShutDownEvent(uint64_t processSerialNumber) {
    const auto running = processes();
    const auto process = std::ranges::find(running, processSerialNumber, &Host::Process::serialNumber);
    if (process == running.end()) {
        return false;
    }
    if (process->name == kLoginProcess) {
        powerOff();
    }
    return true;
}

}  // namespace simulator
