#pragma once

// The JTAG port that the player plays over: three driven signals, one sampled, a wait, and the image's bytes.
//
// The player declares what it needs; hw/ implements it on two of a card's registers, a test on a recorder.
// All state is process-wide: one image is played at a time.

#include <cstdint>

enum JtagPortNumber : int16_t { kPortTCK = 0, kPortTMS = 1, kPortTDI = 2 };

// First byte of the image being played, how many of its bytes have been consumed, and its length in bytes.
// The player never consults the length: an image ends by its own completion command or by an error.
extern uint8_t* gpCurrentBufferBase;
extern uint32_t gulCurrentOffset;
extern uint32_t gulCurrentBufferLength;

// Points the port at an image and at the addresses of the JTAG output and input registers, and writes the
// idle word (all signals low) to the output register. Image and registers stay the caller's and must outlive
// the run.
void openPort(uint8_t* image, uint32_t length, uint32_t* outputRegister, uint32_t* inputRegister);

// Writes the idle word to the output register, which takes TCK, TMS and TDI low. Nothing else is reset.
void idlePort();

// Sets a signal low (0) or high (any other value). TMS and TDI reach the hardware with the next TCK setting;
// TCK is written at once and given 5 microseconds to settle. Other port numbers change nothing.
void setPort(int16_t port, int16_t value);

// One TCK cycle, low, high, low, with TMS and TDI as last set.
void pulseClock();

// Samples TDO: 0 or 1.
uint8_t readTDOBit();

// Waits by register accesses, the port's only clock. Negative and zero waits return at once.
void waitTime(int32_t microseconds);

// Stores the image's next byte, and from time to time has the application handle an event or show progress.
void readByte(uint8_t* out);
