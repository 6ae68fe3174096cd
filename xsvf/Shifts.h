#pragma once

// Shifting bit strings through the chain, with comparison, waits and retries.
//
// A state pointer holds the chain's TAP state code and is kept up to date. Waits are in microseconds, spent
// in Run-Test/Idle. A null captured, expected or mask value means: do not capture, do not compare, compare
// all.

#include <cstdint>

#include "xsvf/VarLenByte.h"

// The bytes that hold this many bits, cut to the 16 bits in which the player counts them.
int16_t xsvfGetAsNumBytes(int32_t bits);

// Shifts the bits in from the Shift state, least significant first, sampling TDO before each clock. The last
// bit is left on TDI: the clock that leaves the Shift state takes it along. Bits beyond the value are shifted
// as 0 and not captured; a negative count shifts nothing.
void xsvfShiftOnly(int32_t bits, const var_len_byte* in, var_len_byte* captured);

// Shifts from the start state (Shift-DR or Shift-IR) to the end state, and again up to retryLimit times while
// the comparison fails. With a wait, a failing attempt that will be repeated first goes through Pause-DR back
// to Shift-DR, and each repetition waits a quarter longer; every attempt captures again. When start and end
// state are the same, the scan stays open and nothing waits. Returns 0, 2 for a mismatch, or 3 for a mismatch
// after all retries.
[[nodiscard]] int32_t xsvfShift(uint8_t* state, uint8_t startState, int32_t bits, const var_len_byte* in,
                                var_len_byte* captured, const var_len_byte* expected,
                                const var_len_byte* mask, uint8_t endState, int32_t waitMicroseconds,
                                uint8_t retryLimit);

// Reads the value to shift in and, if one is given, the expected value from the image, then shifts them
// through the data register. Returns as xsvfShift.
[[nodiscard]] int32_t xsvfBasicXSDRTDO(uint8_t* state, int32_t bits, int16_t bytes, var_len_byte* in,
                                       var_len_byte* captured, var_len_byte* expected,
                                       const var_len_byte* mask, uint8_t endState, int32_t waitMicroseconds,
                                       uint8_t retryLimit);

// Prepares the data of the next XSDRINC step: adds the increment, then gives each bit that is 1 in the data
// mask, from the least significant up, the next of the next-data bits.
void xsvfDoSDRMasking(var_len_byte* data, const var_len_byte* nextData, const var_len_byte* incrementMask,
                      const var_len_byte* dataMask);
