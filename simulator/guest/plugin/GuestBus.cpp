#include "simulator/guest/plugin/GuestBus.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "simulator/storage/PowerLoss.h"

namespace simulator {
namespace {

constexpr uint32_t offsetOf(uint64_t place) {
    return static_cast<uint32_t>(place % CardMemory::kBytes);
}

}  // namespace

GuestBus::GuestBus(const std::filesystem::path& machine, const std::filesystem::path& memory)
    : directory_(MachineDirectory::open(machine, MachineDirectory::OnOpening::powerUp)) {
    Machine& opened = directory_->machine();
    opened.beginRecordings();
    directory_->save();  // other programs must see that the machine is on
    endProcessOnPowerLoss(*directory_, [](const char* message) { std::fprintf(stderr, "%s\n", message); });
    for (std::size_t index = 0; index < opened.cardCount(); ++index) {
        cards_.push_back(std::make_unique<GuestCard>(opened, opened.card(index),
                                                     memory / ("card-" + std::to_string(index + 1))));
    }
}

GuestCard* GuestBus::cardAt(uint64_t place, GuestAccess access) {
    const uint32_t offset = offsetOf(place);
    for (const auto& card : cards_) {
        if (card->page() == place - offset) {
            return card.get();
        }
    }
    if (access == GuestAccess::load) {
        return nullptr;
    }
    for (const auto& card : cards_) {
        if (card->wasStoredTo(offset)) {
            card->setPage(place - offset);
            isMark_ = offset == kMark;
            return card.get();
        }
    }
    return nullptr;
}

void GuestBus::accessed(GuestCard& card, uint32_t offset, uint32_t bytes, GuestAccess access) {
    if (std::exchange(isMark_, false)) {
        [[unlikely]] card.restore(offset);
    } else if (card.accessed(offset, bytes, access)) {
        [[unlikely]] for (const auto& each : cards_) {
            each->show();
        }
    }
}

bool GuestBus::knowsAll() const {
    return std::ranges::none_of(cards_, [](const auto& card) { return card->page() == GuestCard::kNowhere; });
}

void GuestBus::switchOff() {
    Machine& machine = directory_->machine();
    machine.powerOff();
    directory_->save();
    machine.endRecordings();
}

std::string GuestBus::report() const {
    std::string lines;
    for (std::size_t index = 0; index < cards_.size(); ++index) {
        lines += "Card " + std::to_string(index + 1) + ": " + cards_[index]->accesses().text() + '\n';
    }
    return lines;
}

}  // namespace simulator
