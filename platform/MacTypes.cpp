#include <Carbon/MacTypes.h>

#include <algorithm>
#include <cstring>

namespace {

bool isUTF8Continuation(char character) {
    return (static_cast<unsigned char>(character) & 0xC0) == 0x80;
}

}  // namespace

void CopyCStringToPascal(const char* source, Str255 destination) {
    constexpr std::size_t kMostCharacters = 255;
    std::size_t length = strnlen(source, kMostCharacters + 1);
    if (length > kMostCharacters) {
        length = kMostCharacters;
        while (length > 0 && isUTF8Continuation(source[length])) {
            --length;
        }
    }
    destination[0] = static_cast<unsigned char>(length);
    std::memcpy(destination + 1, source, length);
}

bool EqualString(ConstStr255Param first, ConstStr255Param second, bool /*caseSensitive*/,
                 bool /*diacriticalSensitive*/) {
    return std::equal(first, first + first[0] + 1, second, second + second[0] + 1);
}
