#pragma once

// The Mac's basic types: four-character codes, status codes, Pascal strings.

#include <cstdint>

using OSErr = int16_t;
using OSStatus = int32_t;
using OSType = uint32_t;
using DescType = OSType;

// A Pascal string: its length in the first byte, then that many bytes of UTF-8.
using Str255 = unsigned char[256];
using StringPtr = unsigned char*;
using ConstStr255Param = const unsigned char*;

constexpr OSErr noErr = 0;
constexpr OSErr paramErr = -50;
constexpr OSErr procNotFound = -600;

// What 'abcd' means to a compiler for the Mac: the first character is the most significant byte.
constexpr OSType FourCharacters(const char (&text)[5]) {
    return static_cast<OSType>(static_cast<uint8_t>(text[0])) << 24 |
           static_cast<OSType>(static_cast<uint8_t>(text[1])) << 16 |
           static_cast<OSType>(static_cast<uint8_t>(text[2])) << 8 | static_cast<uint8_t>(text[3]);
}

// Converts a NUL-terminated text. One of more than 255 bytes is cut at the end of the last character that
// fits. The framework, which knows no Mac services, has its own PascalFromText.
void CopyCStringToPascal(const char* source, Str255 destination);

// Compares two Pascal strings byte for byte: upper and lower case and diacritical marks count, whatever the
// last two arguments say.
bool EqualString(ConstStr255Param first, ConstStr255Param second, bool caseSensitive,
                 bool diacriticalSensitive);
