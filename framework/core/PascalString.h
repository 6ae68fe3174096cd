#pragma once

// Strings of at most 255 bytes that carry their length in the first byte; the text in them is UTF-8.

#include <string>
#include <string_view>

using Str255 = unsigned char[256];
using StringPtr = unsigned char*;
using ConstStringPtr = const unsigned char*;

// Copies a text into a Pascal string. A text that does not fit is cut off between two characters, never
// inside one. The framework cannot use CopyCStringToPascal, a Mac service, because it knows none.
void PascalFromText(std::string_view text, Str255 outString);

// The text as an ordinary string; empty for a null pointer.
std::string TextOfPascal(ConstStringPtr string);
