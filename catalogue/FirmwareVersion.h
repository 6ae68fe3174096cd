#pragma once

// Firmware versions as people write them: "M12" is version 12 of flavour M.
//
// The flavour says in which order a card with this firmware presents the bytes of its registers: M most
// significant byte first, W least significant byte first.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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

// Shows any number, not only one that an image can have.
std::string firmwareVersionText(char flavour, uint16_t number);

// Nothing for another flavour, or a number of other than one or two digits.
std::optional<FirmwareVersion> parseFirmwareVersion(std::string_view text);

}  // namespace catalogue
