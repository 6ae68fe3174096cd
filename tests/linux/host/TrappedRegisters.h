#pragma once

// A register window in this process whose every access is trapped and answered by another host, so that a
// host that uses the processor's own loads and stores can be given a simulated card.

#include <csignal>
#include <cstddef>
#include <cstdint>

#include "platform/Host.h"

class TrappedRegisters {
  public:
    // Answers from `bus`. Only one object at a time may exist.
    explicit TrappedRegisters(Host& bus);
    ~TrappedRegisters();
    TrappedRegisters(const TrappedRegisters&) = delete;
    TrappedRegisters& operator=(const TrappedRegisters&) = delete;

    // Whether this processor's instructions can be decoded.
#ifdef __x86_64__
    static constexpr bool kIsPossible = true;
#else
    static constexpr bool kIsPossible = false;
#endif

    // Makes a page inaccessible, and answers for a window in it with the bus's words from `words` on. Only
    // the last page is watched; once its window is forgotten, every access to it is a stray one.
    void watch(uint8_t* page, uint32_t offsetInPage, uint32_t bytes, void* words);
    void forget() {
        words_ = nullptr;
    }

    // Accesses of another width than 32 bits, not aligned, or in the page but outside the window. The first
    // one turns the page into plain memory.
    uint64_t strayAccesses() const {
        return strays_;
    }

  private:
    static void onFault(int signal, siginfo_t* information, void* context);
    // False if the address is not in the page.
    [[nodiscard]] bool answer(void* address, void* context);
    // Makes the access that the processor is about to make, and skips its instruction. False, doing neither,
    // if that is not one plain move of 32 bits.
    [[nodiscard]] bool move(uint32_t* word, void* context);

    Host& bus_;
    uint8_t* page_ = nullptr;
    uint32_t offsetInPage_ = 0;
    uint32_t bytes_ = 0;
    uint8_t* words_ = nullptr;
    uint64_t strays_ = 0;
};
