#pragma once

// A card on the bus of a guest computer. The guest accesses the card's memory directly. After each access the
// emulator tells this class, which carries it out and shows its result before the guest's next instruction.

#include <cstdint>
#include <filesystem>

#include "simulator/guest/GuestAccesses.h"
#include "simulator/guest/plugin/CardMemory.h"
#include "simulator/machine/Machine.h"

namespace simulator {

enum class GuestAccess { load, store };

class GuestCard {
  public:
    // Machine and card must outlive it. The file is the card's memory.
    GuestCard(Machine& machine, Card& card, const std::filesystem::path& file);

    // Whether the guest has stored at the offset, in the page, since the last access that was carried out:
    // the memory is not what it should be. A store of what is there already is not seen.
    bool wasStoredTo(uint32_t offset) const;

    // After the guest has accessed `bytes` at an offset in the page. An access counts as time. True if that
    // woke the machine: all cards must then be shown again, so a fault shows from the next access on.
    [[nodiscard]] bool accessed(uint32_t offset, uint32_t bytes, GuestAccess access);

    // Undoes a guest's store.
    void restore(uint32_t offset);
    void show() { memory_.show(*card_.window(0)); }

    // Where the guest has mapped the card's page, once that is known.
    static constexpr uint64_t kNowhere = ~uint64_t{0};
    uint64_t page() const { return page_; }
    void setPage(uint64_t page) { page_ = page; }

    // Those that were not of one aligned word, or not of the registers, are stray.
    const GuestAccesses& accesses() const { return accesses_; }

  private:
    bool refuses(uint32_t offset, uint32_t bytes);

    Machine& machine_;
    Card& card_;
    CardMemory memory_;
    uint64_t page_ = kNowhere;
    GuestAccesses accesses_;
};

}  // namespace simulator
