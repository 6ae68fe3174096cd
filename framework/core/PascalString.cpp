#include "framework/core/PascalString.h"

#include <cstring>

void PascalFromText(std::string_view text, Str255 outString) {
    constexpr std::size_t kMostBytes = 255;
    std::size_t length = text.size();
    if (length > kMostBytes) {
        length = kMostBytes;
        // In UTF-8, 10xxxxxx continues a character: cutting before one would cut through it.
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
            --length;
        }
    }
    outString[0] = static_cast<unsigned char>(length);
    std::memcpy(outString + 1, text.data(), length);
}

std::string TextOfPascal(ConstStringPtr string) {
    return string == nullptr ? std::string()
                             : std::string(reinterpret_cast<const char*>(string + 1), string[0]);
}
