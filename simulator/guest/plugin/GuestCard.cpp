#include "simulator/guest/plugin/GuestCard.h"

namespace simulator {
namespace {

constexpr uint32_t kWordBytes = sizeof(uint32_t);

constexpr uint32_t wordOf(uint32_t offset) {
    return offset & ~(kWordBytes - 1);
}

}  // namespace

GuestCard::GuestCard(Machine& machine, Card& card, const std::filesystem::path& file)
    : machine_(machine), card_(card), memory_(file), accesses_(machine, card) {
    show();
}

bool GuestCard::wasStoredTo(uint32_t offset) const {
    const uint32_t word = wordOf(offset);
    return memory_.at(word) != CardMemory::shouldBe(*card_.window(0), word);
}

void GuestCard::restore(uint32_t offset) {
    // An access that is not aligned reaches into the next word.
    for (const uint32_t word :
         {wordOf(offset), wordOf(offset) + kWordBytes, wordOf(offset) + 2 * kWordBytes}) {
        if (word < CardMemory::kBytes) {
            memory_.put(word, CardMemory::shouldBe(*card_.window(0), word));
        }
    }
}

bool GuestCard::accessed(uint32_t offset, uint32_t bytes, GuestAccess access) {
    if (refuses(offset, bytes)) {
        [[unlikely]] restore(offset);
        return false;
    }
    const uint32_t word = memory_.at(offset);
    const bool wakes = machine_.clock().tick();
    if (wakes) {
        [[unlikely]] machine_.clock().wake();
    }
    if (access == GuestAccess::load) {
        accesses_.addLoad(offset, word);
        return wakes;
    }
    accesses_.addStore(offset, word);
    card_.storeRegister(offset, word);
    const RegisterWindow& window = *card_.window(0);
    memory_.put(offset, window.at(offset));
    memory_.put(registers::kJtagInput, window.at(registers::kJtagInput));
    return wakes;
}

bool GuestCard::refuses(uint32_t offset, uint32_t bytes) {
    if (accesses_.refuses(offset, bytes)) {
        return true;
    }
    if (offset >= Card::kRegisterBytes) {
        [[unlikely]] accesses_.addStray("A word was accessed behind the registers.");
        return true;
    }
    return false;
}

}  // namespace simulator
