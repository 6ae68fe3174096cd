#pragma once

// How a card's registers read in the window.

#include <cstdint>
#include <string>

// 'W' for a card whose registers need a byte swap, 'M' for one whose registers do not.
char ByteOrderLetter(uint8_t byteSwap);

// "NC" for revision 0, else a letter: 1 is "A".
std::string BoardRevisionText(uint16_t revision);

// "M12": the byte-order letter and the version number.
std::string FirmwareVersionText(char byteOrderLetter, uint16_t version);

// The firmware date register: bits 0-4 day, bits 8-11 month (January is 1), bits 12-15 year minus 2000. A
// month that there is not shows as December; the day is shown as it stands.
std::string FirmwareDateText(uint16_t dateRegister);
