#pragma once

// Firmware versions as people write them: "M12" is version 12 of flavour M.
//
// The flavour is the order in which a card with this firmware presents the bytes of its registers: M most
// significant first, W least significant first.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "catalogue/Numbers.h"

namespace catalogue {

struct FirmwareVersion {
    char flavour;
    uint8_t number;
};

// The highest version that the name of a firmware image has room for.
inline constexpr uint8_t kHighestVersion = 99;

constexpr bool isFlavour(char letter) {
    return letter == 'M' || letter == 'W';
}

inline std::string firmwareVersionText(char flavour, uint16_t number) {
    return flavour + std::to_string(number);
}

// Nothing for another flavour, or for a number of other than one or two digits.
inline std::optional<FirmwareVersion> parseFirmwareVersion(std::string_view text) {
    if (text.empty() || text.size() > 3 || !isFlavour(text[0])) {
        return std::nullopt;
    }
    const auto number = wholeNumber(text.substr(1));
    return number ? std::optional(FirmwareVersion{text[0], static_cast<uint8_t>(*number)}) : std::nullopt;
}

}  // namespace catalogue
