#pragma once

// The XSVF player: plays an image, the program of one operation on a JTAG chain, over the JTAG port.

#include <cstdint>

#include "xsvf/StateRecord.h"

// Plays a whole image of `length` bytes. The outcome is in the record: iResult is 0 or the error (XsvfError)
// at which the run stopped. The registers are the addresses of the card's JTAG output and input registers;
// the record, the image and the registers stay the caller's. Allocates nothing.
//
// An image has to reach XCOMPLETE or an error before its last byte: the length does not end a run.
void DoXsvf(tagSXsvfInfo* info, uint8_t* image, uint32_t length, uint32_t* outputRegister,
            uint32_t* inputRegister);

// Runs the image that the port has open, from a reset of the chain to its end. Returns iResult.
int32_t xsvfExecute(tagSXsvfInfo* info);

// The parts of a run: the reset, one command, the end. The first two return iResult.
int32_t xsvfInitialize(tagSXsvfInfo* info);
int32_t xsvfRun(tagSXsvfInfo* info);
void xsvfCleanup(tagSXsvfInfo* info);
