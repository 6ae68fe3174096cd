#pragma once

// The XSVF format as this player reads it: opcodes, state codes, limits and error codes. Numbers in an image
// are unsigned, most significant byte first.

#include <cstdint>

// Bytes that one value may hold.
constexpr int16_t MAX_LEN = 1000;

// Bytes of the longest data mask that XSDRINC takes.
constexpr int16_t kXsvfLongestStepMask = 255;

// The command byte. 5, 6 and everything from kXsvfOpcodes on are illegal.
enum class XsvfOpcode : uint8_t {
    XCOMPLETE = 0,
    XTDOMASK = 1,
    XSIR = 2,
    XSDR = 3,
    XRUNTEST = 4,
    XREPEAT = 7,
    XSDRSIZE = 8,
    XSDRTDO = 9,
    XSETSDRMASKS = 10,
    XSDRINC = 11,
    XSDRB = 12,
    XSDRC = 13,
    XSDRE = 14,
    XSDRTDOB = 15,
    XSDRTDOC = 16,
    XSDRTDOE = 17,
    XSTATE = 18,
    XENDIR = 19,
    XENDDR = 20,
};
constexpr uint8_t kXsvfOpcodes = 21;

// A TAP state in one byte of flags, and the operand of XSTATE. Elsewhere that operand is a state's number.
// Only the stable states outside the scans (0 and 1) have the same number here, and the player does not
// translate the others.
constexpr uint8_t kTapPauseFlag = 0x02;
constexpr uint8_t kTapShiftFlag = 0x04;
constexpr uint8_t kTapDataFlag = 0x10;
constexpr uint8_t kTapInstructionFlag = 0x20;
constexpr uint8_t kTapRegisterFlags = kTapDataFlag | kTapInstructionFlag;

constexpr uint8_t kTapTestLogicReset = 0x00;
constexpr uint8_t kTapRunTestIdle = 0x01;
constexpr uint8_t kTapPauseDR = kTapDataFlag | kTapPauseFlag;
constexpr uint8_t kTapShiftDR = kTapDataFlag | kTapShiftFlag;
constexpr uint8_t kTapPauseIR = kTapInstructionFlag | kTapPauseFlag;
constexpr uint8_t kTapShiftIR = kTapInstructionFlag | kTapShiftFlag;

// Operands of XENDIR and XENDDR.
constexpr uint8_t kXsvfEndIdle = 0;
constexpr uint8_t kXsvfEndPause = 1;

// How a run ends. The numbers reach the window's alerts.
enum XsvfError : int32_t {
    kXsvfNoError = 0,
    kXsvfUnknown = 1,
    kXsvfTdoMismatch = 2,
    kXsvfMaxRetries = 3,
    kXsvfIllegalCommand = 4,
    kXsvfIllegalState = 5,
    kXsvfDataOverflow = 6,
};
