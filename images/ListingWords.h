#pragma once

// The words of a listing's line, and what they stand for.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace images {

// Why a line is refused, in one sentence; thrown by the functions here.
struct ListingRefusal {
    std::string reason;
};

// The line's command and operands, without an offset before them and a comment behind.
[[nodiscard]] std::vector<std::string_view> listingWords(std::string_view line);

// A word as a message can show it: not too long, and with nothing in it that a terminal would act upon.
[[nodiscard]] std::string quotedWord(std::string_view word);

// Decimal, or hexadecimal with 0x.
[[nodiscard]] uint32_t numberOf(std::string_view word, uint32_t most);
[[nodiscard]] uint8_t byteOf(std::string_view word);

// The bytes of a hexadecimal number of any length, most significant first; an odd digit makes a byte of its
// own.
[[nodiscard]] std::vector<uint8_t> valueOf(std::string_view word);

}  // namespace images
