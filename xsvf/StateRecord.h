#pragma once

// Everything the player knows during a run, and the outcome after it.

#include <cstdint>

#include "xsvf/Format.h"
#include "xsvf/VarLenByte.h"

// Belongs to the caller of DoXsvf and stays readable after the run: a caller may learn something from a run
// that failed on purpose. The values keep what they held before a run until the image loads them.
struct tagSXsvfInfo {
    uint8_t ucIsComplete = 0;
    uint8_t ucOpcode = 0;
    int32_t lCommandsRead = 0;  // including the one being executed
    int32_t iResult = kXsvfNoError;
    uint8_t ucCurrentState = kTapTestLogicReset;
    uint8_t ucIrEndState = kTapRunTestIdle;
    uint8_t ucDrEndState = kTapRunTestIdle;
    uint8_t ucRetryLimit = 0;
    int32_t lWaitMicroseconds = 0;  // in Run-Test/Idle after XSIR and the compared shifts
    int32_t lDrBits = 0;
    int16_t sDrBytes = 0;
    var_len_byte lvShiftIn;        // TDI, and scratch for the 4-byte operands
    var_len_byte lvExpected;       // TDO that a compared shift must yield
    var_len_byte lvCaptured;       // TDO of the last captured shift
    var_len_byte lvCompareMask;    // 1 = compare
    var_len_byte lvIncrementMask;  // added to lvShiftIn before each XSDRINC step
    var_len_byte lvDataFieldMask;  // bits of lvShiftIn that take new data in an XSDRINC step
    var_len_byte lvNextDataBits;   // that data
};

// Sets the scalar fields to the values that a run starts with, leaves the values alone, and returns 0.
int32_t xsvfInfoInit(tagSXsvfInfo* info);

// The record owns nothing, so there is nothing to release.
void xsvfInfoCleanup(tagSXsvfInfo* info);

// The player's text for an error code; any other code counts as unknown.
const char* xsvfErrorText(int32_t error);
