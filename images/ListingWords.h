#pragma once

// The words in a line of a listing, and what they mean. A word that means nothing is files::UserError.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace images {

// The line's command and operands, without the offset before them and the comment after them.
std::vector<std::string_view> listingWords(std::string_view line);

// A word for a message: in quotes, shortened, and without control characters.
std::string quotedWord(std::string_view word);

// Decimal, or hexadecimal with 0x.
uint32_t parseNumber(std::string_view word, uint32_t most);
uint8_t parseByte(std::string_view word);

// The bytes of a hexadecimal number of any length, most significant first. If the number of digits is odd,
// the first digit is a byte by itself.
std::vector<uint8_t> parseValue(std::string_view word);

}  // namespace images
