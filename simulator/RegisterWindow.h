#pragma once

// A range of a card's memory as the bus sees it: what every load would return now, and how often each word
// was loaded and stored. The card keeps the words up to date, so that a load is no more than looking one up.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace simulator {

class RegisterWindow {
  public:
    // The length is a multiple of four. Answers all ones until something is put in.
    explicit RegisterWindow(uint32_t bytes)
        : words_(bytes / sizeof(uint32_t), kNobodyAnswers), loads_(words_.size()), stores_(words_.size()) {}

    [[nodiscard]] std::size_t words() const { return words_.size(); }
    [[nodiscard]] uint32_t bytes() const { return static_cast<uint32_t>(words_.size() * sizeof(uint32_t)); }

    // Offsets are in bytes and multiples of four. Words have the byte at the lowest address as their most
    // significant one.
    [[nodiscard]] uint32_t word(uint32_t offset) const { return words_[offset / sizeof(uint32_t)]; }
    void put(uint32_t offset, uint32_t word) { words_[offset / sizeof(uint32_t)] = word; }
    void fill(uint32_t word) { std::ranges::fill(words_, word); }
    void fillUnanswered() { fill(kNobodyAnswers); }

    // The bus's side, by word: loads one, and notes that one was stored.
    uint32_t load(std::size_t index) {
        ++loads_[index];
        return words_[index];
    }
    void countStore(std::size_t index) { ++stores_[index]; }

    // Since this process opened the machine.
    [[nodiscard]] uint64_t loads(uint32_t offset) const { return loads_[offset / sizeof(uint32_t)]; }
    [[nodiscard]] uint64_t stores(uint32_t offset) const { return stores_[offset / sizeof(uint32_t)]; }

  private:
    static constexpr uint32_t kNobodyAnswers = 0xFFFFFFFF;

    std::vector<uint32_t> words_;
    std::vector<uint64_t> loads_;
    std::vector<uint64_t> stores_;
};

}  // namespace simulator
