#pragma once

// A range of a card's memory as the bus sees it: what every load would return now, and how often each word
// was loaded and stored. The card keeps the words up to date, so that a load is no more than looking one up.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace simulator {

class RegisterWindow {
  public:
    struct Word {
        uint64_t loads = 0;  // since this process opened the machine
        uint64_t stores = 0;
        uint32_t content = kNobodyAnswers;  // with the byte at the lowest address as its most significant one
    };

    // What a load gets where no device answers.
    static constexpr uint32_t kNobodyAnswers = 0xFFFFFFFF;

    // The length is a multiple of four. Nobody answers until something is put in.
    explicit RegisterWindow(uint32_t bytes) : words_(bytes / sizeof(uint32_t)) {}
    RegisterWindow(const RegisterWindow&) = delete;  // the bus holds on to the words
    RegisterWindow& operator=(const RegisterWindow&) = delete;

    [[nodiscard]] uint32_t bytes() const { return static_cast<uint32_t>(words_.size() * sizeof(uint32_t)); }

    // By offset in bytes, a multiple of four.
    [[nodiscard]] const Word& at(uint32_t offset) const { return words_[offset / sizeof(uint32_t)]; }
    void put(uint32_t offset, uint32_t content) { words_[offset / sizeof(uint32_t)].content = content; }

    void fill(uint32_t content) {
        for (Word& word : words_)
            word.content = content;
    }

    // For the bus, which loads from them and counts. They stay where they are.
    [[nodiscard]] std::vector<Word>& words() { return words_; }

  private:
    std::vector<Word> words_;
};

}  // namespace simulator
