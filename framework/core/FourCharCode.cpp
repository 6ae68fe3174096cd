#include "framework/core/FourCharCode.h"

#include <charconv>

int32_t CodeFromName(std::string_view name) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error == std::errc() && end == name.data() + name.size() && number >= 0) {
        return number;
    }
    if (name.size() != 4) {
        return 0;
    }
    uint32_t code = 0;
    for (const char character : name) {
        code = code << 8 | static_cast<uint8_t>(character);
    }
    return static_cast<int32_t>(code);
}

std::string TextOfCode(int32_t code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto character = static_cast<char>(static_cast<uint32_t>(code) >> shift & 0xFF);
        text += character >= ' ' && character <= '~' ? character : '?';
    }
    return text;
}
