#include "files/PrintableText.h"

#include <cstdint>
#include <cstdio>

namespace files {
namespace {

constexpr uint8_t kDelete = 0x7F;
// In UTF-8, the control characters 0x80 to 0x9F are this byte followed by their number.
constexpr uint8_t kUpperControlLead = 0xC2;

void appendNumber(std::string& text, uint8_t byte) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    text.append("\\x").append({kDigits[byte >> 4], kDigits[byte & 0xF]});
}

}  // namespace

std::string printable(std::string_view text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<uint8_t>(text[i]);
        const auto next = static_cast<uint8_t>(i + 1 < text.size() ? text[i + 1] : '\0');
        if (byte == kUpperControlLead && next >= 0x80 && next < 0xA0) {
            appendNumber(line, next);
            ++i;
        } else if (byte < ' ' || byte == kDelete) {
            appendNumber(line, byte);
        } else {
            line += text[i];
        }
    }
    return line;
}

void say(std::string_view text) {
    std::fprintf(stderr, "%s\n", printable(text).c_str());
}

}  // namespace files
