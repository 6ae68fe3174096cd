#include "catalogue/FirmwareVersion.h"

#include "catalogue/Numbers.h"

namespace catalogue {

std::string firmwareVersionText(char flavour, uint16_t number) {
    return flavour + std::to_string(number);
}

std::optional<FirmwareVersion> parseFirmwareVersion(std::string_view text) {
    constexpr std::size_t kMostCharacters = 3;
    if (text.empty() || text.size() > kMostCharacters || !isFlavour(text[0])) {
        return std::nullopt;
    }
    const auto number = wholeNumber(text.substr(1));
    return number ? std::optional(FirmwareVersion{text[0], static_cast<uint8_t>(*number)}) : std::nullopt;
}

}  // namespace catalogue
