#include "images/ByteText.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace images {

void appendHexadecimal(std::string& text, std::span<const uint8_t> bytes) {
    for (const uint8_t byte : bytes) {
        text += kHexadecimalDigits[byte >> 4];
        text += kHexadecimalDigits[byte & 0xF];
    }
}

std::string byteText(uint8_t byte) {
    std::string text = "0x";
    appendHexadecimal(text, {&byte, 1});
    return text;
}

std::string hexadecimalText(uint32_t number, int digits) {
    std::array<char, 16> text{};
    (void)std::snprintf(text.data(), text.size(), "0x%0*lX", digits, static_cast<unsigned long>(number));
    return text.data();
}

std::string bytesText(std::size_t bytes) {
    return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

std::string offsetText(std::size_t offset) {
    constexpr std::size_t fewestDigits = 6;
    std::string text;
    for (; offset != 0 || text.size() < fewestDigits; offset >>= 4) {
        text += kHexadecimalDigits[offset & 0xF];
    }
    std::ranges::reverse(text);
    return text;
}

}  // namespace images
