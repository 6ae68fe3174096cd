#pragma once

// The JTAG port on the card's two registers: the operations of xsvf/JtagPort.h, and playing over them. The
// simulated card has its own list of the bits, on purpose: a mistake in a shared one would pass every test.
//
// Every TCK level is one write of the whole output register and 15 reads of it, which give the level 5
// microseconds to settle; sampling TDO is one read of the input register. These counts pace the JTAG clock.

#include <cstdint>

#include "xsvf/StateRecord.h"

// Bits of the JTAG output register.
constexpr uint32_t kJtagTCK = 0x40;
constexpr uint32_t kJtagTMS = 0x20;
constexpr uint32_t kJtagTDI = 0x10;
constexpr uint32_t kJtagActivity = 0x08;  // inverted every kProgressBytes of an image

// The bit of the JTAG input register.
constexpr uint32_t kJtagTDO = 0x80;

constexpr int32_t kReadsPerMicrosecond = 3;
constexpr int32_t kSettlingMicroseconds = 5;

// Bytes of an image after which the application may handle an event, and shows the progress.
constexpr uint32_t kEventBytes = 1000;
constexpr uint32_t kProgressBytes = 3000;

// Shadow of the JTAG output register, which is never read for its value.
extern uint32_t gulControlReg;

// Plays an image of `length` bytes on the open card, with DoXsvf; the outcome is in the record.
void PlayOnCard(tagSXsvfInfo* info, uint8_t* image, uint32_t length);
