#pragma once

// The player's bit strings and the operations on them.

#include <cstdint>

#include "xsvf/Format.h"

// One big unsigned number, most significant byte first: bit 0 of byte sByteCount - 1 is the first bit shifted
// into the chain. If its length is not a multiple of 8, the high bits of byte 0 are unused.
struct var_len_byte {
    int16_t sByteCount = 0;  // 0 to MAX_LEN; negative only after a data size that does not fit in 16 bits
    uint8_t aucValue[MAX_LEN + 1] = {};
};

// Takes the next bytes of the image into the value. A negative count takes 65536 + byteCount bytes, as a
// 16-bit counter that runs down to 0 does; bytes beyond the value's capacity are taken and dropped.
void readVal(var_len_byte* value, int16_t byteCount);

// 1 if the actual value equals the expected one in every bit that is 1 in the mask (all bits without a mask),
// else 0. The expected value's length counts; the others are read at the same positions.
int32_t EqualLenVal(const var_len_byte* expected, const var_len_byte* actual, const var_len_byte* mask);

// Adds at the first addend's width; a carry out of byte 0 is lost. The result may be the first addend.
void addVal(var_len_byte* result, const var_len_byte* first, const var_len_byte* second);

// The last four bytes as a number.
uint32_t value(const var_len_byte* number);

// The place for a trace of the player's values. Prints nothing, because standard error is for the program's
// own messages. The value may be null.
void xsvfPrintLenVal(const var_len_byte* traced);
