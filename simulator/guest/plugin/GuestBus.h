#pragma once

// The cards of a simulated machine on the bus of a guest computer, from power-up to power-off.
//
// The first store that changes a card's memory shows where the guest has mapped the card's page; after a
// move, the next such store does. Loads before that are not seen. So a guest that wants all of its accesses
// counted begins with a store to kMark, which is not counted.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "simulator/guest/plugin/GuestCard.h"
#include "simulator/storage/MachineDirectory.h"

namespace simulator {

class GuestBus {
  public:
    // An offset after the registers: any store that changes the word makes the card known.
    static constexpr uint32_t kMark = 0xFFC;

    // Switches on the machine in a folder, and makes a file with the memory of each card in another folder:
    // "card-1" and so on. If the machine's power fails, it is saved and the process exits with 3. Throws
    // files::UserError.
    GuestBus(const std::filesystem::path& machine, const std::filesystem::path& memory);

    // The card at a place in the guest's physical memory that its processor has just accessed; null if there
    // is none, or if none is known to be there yet.
    GuestCard* cardAt(uint64_t place, GuestAccess access);
    // After the guest's processor has accessed `bytes` of the card's page, and before its next access.
    void accessed(GuestCard& card, uint32_t offset, uint32_t bytes, GuestAccess access);
    // Whether the places of all cards are known.
    bool knowsAll() const;

    // Switches the machine off and saves it. Throws files::UserError.
    void switchOff();

    // One line a card: its number, and what was accessed.
    std::string report() const;

  private:
    std::unique_ptr<MachineDirectory> directory_;
    std::vector<std::unique_ptr<GuestCard>> cards_;
    bool isMark_ = false;  // the access that is about to be carried out has made its card known
};

}  // namespace simulator
