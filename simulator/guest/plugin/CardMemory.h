#pragma once

// The page of memory that is a card's registers on a guest computer's bus, in a file that this process and
// the emulator share.

#include <cstdint>
#include <filesystem>

#include "simulator/machine/RegisterWindow.h"

namespace simulator {

class CardMemory {
  public:
    // What the emulator gives the card on the bus; the registers are at its beginning.
    static constexpr uint32_t kBytes = 0x1000;

    // Creates the file if there is none. Throws files::FileError.
    explicit CardMemory(const std::filesystem::path& file);
    CardMemory(const CardMemory&) = delete;
    CardMemory& operator=(const CardMemory&) = delete;
    ~CardMemory();

    // The word at an offset, with its most significant byte at the lowest address. The offset is a multiple
    // of four below kBytes.
    uint32_t at(uint32_t offset) const;
    // What the guest's next load finds. The card is not told.
    void put(uint32_t offset, uint32_t word);

    // What a load of the window at an offset, or of the page after the window, should find.
    static uint32_t shouldBe(const RegisterWindow& window, uint32_t offset) {
        return offset < window.bytes() ? window.at(offset) : 0;
    }
    // Shows the window.
    void show(const RegisterWindow& window);

  private:
    uint8_t* bytes_;
};

}  // namespace simulator
