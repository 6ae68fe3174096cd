#pragma once

// The XSVF programs that read, write and protect the identity in a card's configuration PROM. The simulated
// PROM has its own list of instructions, on purpose: a mistake in a shared one would pass every test.
//
// The chain is TDI, PROM, FPGA, TDO. Every instruction is 13 bits, the PROM's 8 above the FPGA's 5, which
// stay at bypass; every data shift is one bit longer than the PROM's register, and its bit 0 is the FPGA's
// bypass register, which captures 0.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

// Instructions of the PROM, with the FPGA in bypass.
constexpr uint16_t kPromBypass = 0x1FFF;
constexpr uint16_t kPromIdentificationCode = 0x1FDF;
constexpr uint16_t kPromUserCode = 0x1FBF;
constexpr uint16_t kPromLeaveProgramming = 0x1E1F;
constexpr uint16_t kPromEnterProgramming = 0x1D1F;
constexpr uint16_t kPromAddress = 0x1D7F;
constexpr uint16_t kPromProgram = 0x1D5F;
constexpr uint16_t kPromControlData = 0x1E7F;
constexpr uint16_t kPromControlRead = 0x1C5F;

// Bytes.
constexpr std::size_t kProtectProgramSize = 169;
constexpr std::size_t kReadProgramSize = 104;
constexpr std::size_t kWriteProgramSize = 310;

// Checks the identification code, then sets the protection bits.
extern const std::array<uint8_t, kProtectProgramSize> kProtectProgram;

// Captures the user code in a comparison that no working chain can pass: command kReadUserCodeCommand expects
// the FPGA's bypass bit as 1. A run that stops there, with an expected value of kUserCodeBytes, holds the
// user code in its captured value, bit 0 being the bypass bit.
extern const std::array<uint8_t, kReadProgramSize> kReadProgram;
constexpr int32_t kReadUserCodeCommand = 20;
constexpr int16_t kUserCodeBytes = 5;

// Programs the user code three times and verifies it; PatchIdentity puts in the identity.
extern const std::array<uint8_t, kWriteProgramSize> kWriteProgram;

// Where the identity goes in kWriteProgram: the data of the three program steps, then the mask of the verify
// step. As a mask it compares exactly the bits that are 1 in the identity, against an expectation of all ones
// except the topmost bit, so that an identity with bit 31 set fails its verify.
constexpr std::array<std::size_t, 4> kIdentityOffsets = {78, 138, 198, 275};

// Puts an identity into all four fields of a copy of kWriteProgram.
void PatchIdentity(std::span<uint8_t, kWriteProgramSize> program, uint32_t identity);
