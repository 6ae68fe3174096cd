#pragma once

// A card's identity as people read it off the card: model, year, week, unit.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cardsim {

// "2103070021 (0x21307015)", or "blank (0xFFFFFFFF)".
std::string identityText(uint32_t identity);

// The identity that such a text stands for, or either half of it, or the word blank. Nothing for other texts.
std::optional<uint32_t> parseIdentity(std::string_view text);

}  // namespace cardsim
