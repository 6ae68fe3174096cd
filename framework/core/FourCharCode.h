#pragma once

// Four-character codes: four ASCII characters packed into 32 bits, the first one most significant. They name
// panes, messages, save options and errors.

#include <cstdint>
#include <string>
#include <string_view>

using PaneIDT = int32_t;
using MessageT = int32_t;
using CommandT = int32_t;

// FourCharCode("CRDS") is 0x43524453. The compiler refuses anything but four characters.
consteval int32_t FourCharCode(const char (&text)[5]) {
    uint32_t code = 0;
    for (int index = 0; index < 4; ++index) {
        code = code << 8 | static_cast<uint8_t>(text[index]);
    }
    return static_cast<int32_t>(code);
}

// The number that a name in a layout stands for: all digits are a decimal number ("1101"), other names of
// four characters are a four-character code. Anything else (Designer's own names, mostly) is 0, which names
// nothing.
int32_t CodeFromName(std::string_view name);

// The four characters of a code, for error reports, with a '?' for each that cannot be printed.
std::string TextOfCode(int32_t code);
