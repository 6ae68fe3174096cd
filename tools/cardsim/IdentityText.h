#pragma once

// A card's identity as people read it off the card: model, year, week, unit.

#include <cstdint>
#include <optional>
#include <string>

namespace cardsim {

// "2103070021 (0x21307015)", or "blank (0xFFFFFFFF)".
[[nodiscard]] std::string identityName(uint32_t identity);

// What such a text, its first or its second half, or the word blank means; nothing for any other text.
[[nodiscard]] std::optional<uint32_t> identityNamed(const std::string& text);
}  // namespace cardsim
