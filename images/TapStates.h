#pragma once

// The TAP states that an image can name, and how far they are apart.

#include <cstdint>
#include <optional>
#include <string_view>

namespace images {

// The standard's name of a state code, and back; nothing for a code or a name that the player does not have.
[[nodiscard]] std::optional<std::string_view> tapStateName(uint8_t code);
[[nodiscard]] std::optional<uint8_t> tapStateCode(std::string_view name);

// TCK cycles of the player's way from one state code to another. Nothing for a way that it refuses, into a
// Pause state from elsewhere than its own Shift state, and for codes without a name.
[[nodiscard]] std::optional<uint32_t> tapClocks(uint8_t from, uint8_t to);

}  // namespace images
