#pragma once

// The TAP states that an image can name, and the TCK cycles between them.

#include <cstdint>
#include <optional>
#include <string_view>

namespace images {

// IEEE 1149.1's name for a state code, and back; nothing for a code or a name that the player does not have.
std::optional<std::string_view> tapStateName(uint8_t code);
std::optional<uint8_t> tapStateCode(std::string_view name);

// The number of TCK cycles that the player takes from one state to another. Nothing for codes without a name,
// and where the player refuses: into a Pause state from any state but its own Shift state.
std::optional<uint32_t> tapClocks(uint8_t from, uint8_t to);

}  // namespace images
