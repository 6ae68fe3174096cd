#include "app/logic/CardTexts.h"

#include <algorithm>

#include "app/logic/Calendar.h"
#include "app/logic/FormatText.h"

char ByteOrderLetter(uint8_t byteSwap) {
    return byteSwap != 0 ? 'W' : 'M';
}

std::string BoardRevisionText(uint16_t revision) {
    constexpr int kBeforeLetterA = 'A' - 1;
    return revision == 0 ? "NC"
                         : std::string(1, static_cast<char>(static_cast<uint8_t>(revision + kBeforeLetterA)));
}

std::string FirmwareVersionText(char byteOrderLetter, uint16_t version) {
    return FormatText("%c%u", byteOrderLetter, version);
}

std::string FirmwareDateText(uint16_t dateRegister) {
    const int day = dateRegister & 0x1F;
    // Unsigned, so that month 0 wraps to a large index and is caught by the same limit as 13 to 15.
    const auto month = static_cast<uint16_t>((dateRegister >> 8 & 0xF) - 1);
    const int year = dateRegister >> 12;
    return DateText(std::min<int>(month, kMonths - 1), day, year + kFirstYear);
}
