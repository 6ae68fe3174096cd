#pragma once

// A card's identity, which is its serial number. It is held in one word and is printed on the card in ten
// characters:
//
//               model   year minus 2000   week   unit
//   bits        24-31   20-23             12-19  0-11
//   characters  0-1     2-3               4-5    6-9
//
// The model is in hexadecimal and everything else in decimal: 0x21307015 is "2103070021".
//
// Updater and tools share these fields, because they are about what is printed on the card. A simulated card
// knows none of them: it keeps the word that it is given, and the words of the default machine are written
// out, so that a field in the wrong place shows.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace catalogue {

// The two words that stand for no identity; the second is what an erased PROM reads as.
inline constexpr uint32_t kNoIdentity = 0;
inline constexpr uint32_t kErasedIdentity = 0x7FFFFFFF;

bool isBlankIdentity(uint32_t identity);

uint16_t identityModelCode(uint32_t identity);

inline constexpr std::size_t kSerialNumberCharacters = 10;

// A week above 99, which no card has, takes one more character.
std::string serialNumberText(uint32_t identity);

// The two characters with which the serial number of every card of a model begins.
std::string serialNumberPrefix(uint16_t modelCode);

// "Feb 12, 2003", the first day of the week, or "Unknown!" if the week is not one of a year.
std::string manufactureDateText(uint32_t identity);

// The identity of a serial number that was typed (UTF-8), or nothing if no card can have it: it must
// have ten characters, a known model, a year from 1 to 15, a week from 1 to 53 and a unit from 1 to 4095. A
// field is read up to its first foreign character, so "1x" counts as 1.
std::optional<uint32_t> parseTypedSerialNumber(std::string_view text);

// The identity that serialNumberText shows as this text, even one that no card should have. Nothing if the
// text does not have ten characters, or a field is not a number or too large for its bits.
std::optional<uint32_t> parseSerialNumber(std::string_view text);

}  // namespace catalogue
