#pragma once

// What the updater does with the open card's configuration PROM. Each operation plays XSVF on the card's JTAG
// chain and returns when it has been played; gpRegisters must point at the card.
//
// The identity is in the PROM's user code, whose bit 31 always reads as 0.

#include <cstdint>

// Sets the PROM's protection bits. Returns 0, or 1 if the chain did not answer correctly.
uint16_t ProtectEEPROM();

// Reads the identity. Returns 0; or 1, storing nothing, if it could not be read.
[[nodiscard]] uint16_t GetSerialNumber(uint32_t* identity);

// Writes the identity, sets the protection bits and reads the identity back. Returns 0; or, after an alert,
// the player's error code if writing failed, 1 if the identity could not be read back, 2 if it read back
// differently. An identity with bit 31 set cannot be written.
uint16_t WriteSerialNumber(uint32_t identity);

// Plays a firmware image of `length` bytes, which erases and programs the whole PROM, then writes the
// identity held in gSerialNumber back, even if the image failed, an exception broke it off, or that identity
// is blank. Returns the player's error code if the image failed, after an alert, else what WriteSerialNumber
// returned. Passes the exception on.
[[nodiscard]] uint16_t ProgramConfigProm(uint8_t* image, uint32_t length);
