#pragma once

// A range of a card's memory as the bus sees it: what a load of each word would return now. The card keeps
// the words up to date, so a load is a mere look-up.

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace simulator {

class RegisterWindow {
  public:
    // What a load returns if no device answers.
    static constexpr uint32_t kNobodyAnswers = 0xFFFFFFFF;

    // The length is a multiple of four. Every word starts as kNobodyAnswers.
    explicit RegisterWindow(uint32_t bytes) : words_(bytes / sizeof(uint32_t), kNobodyAnswers) {}
    RegisterWindow(const RegisterWindow&) = delete;  // the bus holds on to the words
    RegisterWindow& operator=(const RegisterWindow&) = delete;

    uint32_t bytes() const { return static_cast<uint32_t>(words_.size() * sizeof(uint32_t)); }

    // By offset in bytes, a multiple of four. A word's most significant byte is the one at the lowest
    // address.
    uint32_t at(uint32_t offset) const { return words_[offset / sizeof(uint32_t)]; }
    void put(uint32_t offset, uint32_t word) { words_[offset / sizeof(uint32_t)] = word; }

    void fill(uint32_t word) { std::ranges::fill(words_, word); }

    // For the bus to load from. They never move.
    std::span<const uint32_t> words() const { return words_; }

  private:
    std::vector<uint32_t> words_;
};

}  // namespace simulator
