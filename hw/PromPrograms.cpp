#include "hw/PromPrograms.h"

#include "xsvf/Assembler.h"

namespace {

constexpr uint8_t kChainInstructionBits = 13;

// Data sizes: the PROM's register and the FPGA's bypass bit.
constexpr uint32_t kIdentificationBits = 33;
constexpr uint32_t kUserCodeBits = 33;
constexpr uint32_t kAddressBits = 17;
constexpr uint32_t kModeBits = 7;
constexpr uint32_t kControlBits = 4;
constexpr uint32_t kBothBypassedBits = 2;

// The row that holds the user code and the protection bits.
constexpr uint64_t kSpecialRow = 0x010000;

// Each write step replaces this with the identity; as it stands it is a blank one.
constexpr uint64_t kBlankUserCode = 0x01FFFFFFFE;
constexpr uint64_t kWholeUserCode = 0x01FFFFFFFF;
constexpr uint64_t kBypassBitAsOne = 0x00FFFFFFFF;

// Microseconds.
constexpr uint32_t kProgramWait = 14000;
constexpr uint32_t kProtectWait = 14001;
constexpr uint32_t kControlReadWait = 51;
constexpr uint32_t kLeaveWait = 4000;
constexpr uint32_t kProtectLeaveWait = 110000;

constexpr auto kProtect = assembleXsvf<169>([](auto& xsvf) {
    const auto instruction = [&](uint16_t code) { xsvf.XSIR(kChainInstructionBits, code); };
    xsvf.XREPEAT(0);
    xsvf.XSTATE(kTapTestLogicReset);
    xsvf.XSTATE(kTapRunTestIdle);
    xsvf.XRUNTEST(0);
    instruction(kPromBypass);
    instruction(kPromIdentificationCode);
    xsvf.XSDRSIZE(kIdentificationBits);
    xsvf.XTDOMASK(0x001FF1FFFE);
    xsvf.XSDRTDO(0, 0x01EA06A126);
    xsvf.XRUNTEST(kProtectLeaveWait);
    instruction(kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(kPromEnterProgramming);
    xsvf.XSDRSIZE(kModeBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(0x68, 0);
    instruction(kPromAddress);
    xsvf.XRUNTEST(2);
    xsvf.XSDRSIZE(kAddressBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(kSpecialRow, 0);
    xsvf.XRUNTEST(0);
    instruction(kPromControlData);
    xsvf.XSDRSIZE(kControlBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(0x06, 0);
    xsvf.XRUNTEST(kProtectWait);
    instruction(kPromProgram);
    xsvf.XRUNTEST(kControlReadWait);
    instruction(kPromControlRead);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(0x06, 0x06);
    xsvf.XRUNTEST(kProtectLeaveWait);
    instruction(kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(kPromBypass);
    instruction(kPromBypass);
    xsvf.XSDRSIZE(kBothBypassedBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(0, 0);
    xsvf.XCOMPLETE();
});

constexpr auto kRead = assembleXsvf<104>([](auto& xsvf) {
    const auto instruction = [&](uint16_t code) { xsvf.XSIR(kChainInstructionBits, code); };
    xsvf.XREPEAT(8);
    xsvf.XSTATE(kTapRunTestIdle);
    xsvf.XRUNTEST(0);
    instruction(kPromBypass);
    instruction(kPromIdentificationCode);
    xsvf.XSDRSIZE(kIdentificationBits);
    xsvf.XTDOMASK(0x0001F1FFFF);
    xsvf.XSDRTDO(0x01FFFFFFFE, 0x000A04A126);
    instruction(kPromBypass);
    instruction(kPromEnterProgramming);
    xsvf.XSDRSIZE(kModeBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(0x08, 0);
    xsvf.XSDRSIZE(kAddressBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(kSpecialRow, 0);
    instruction(kPromUserCode);
    xsvf.XSDRSIZE(kUserCodeBits);
    xsvf.XTDOMASK(kWholeUserCode);
    xsvf.XSDRTDO(kBlankUserCode, kBypassBitAsOne);
    instruction(kPromBypass);
    xsvf.XCOMPLETE();
});

constexpr auto kWrite = assembleXsvf<310>([](auto& xsvf) {
    const auto instruction = [&](uint16_t code) { xsvf.XSIR(kChainInstructionBits, code); };
    const auto programUserCode = [&](uint64_t addressMask, uint64_t expectedAddress, uint32_t waitAfter) {
        instruction(kPromAddress);
        xsvf.XSDRSIZE(kAddressBits);
        xsvf.XTDOMASK(addressMask);
        xsvf.XSDRTDO(kSpecialRow, expectedAddress);
        instruction(kPromUserCode);
        xsvf.XSDRSIZE(kUserCodeBits);
        xsvf.XTDOMASK(0);
        xsvf.XSDRTDO(kBlankUserCode, 0);
        xsvf.XRUNTEST(kProgramWait);
        instruction(kPromProgram);
        xsvf.XRUNTEST(waitAfter);
    };
    xsvf.XREPEAT(0);
    xsvf.XSTATE(kTapTestLogicReset);
    xsvf.XSTATE(kTapRunTestIdle);
    xsvf.XRUNTEST(kLeaveWait);
    instruction(kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(kPromBypass);
    instruction(kPromBypass);
    instruction(kPromEnterProgramming);
    xsvf.XSDRSIZE(kModeBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(0x08, 0);
    programUserCode(0, 0, 0);
    programUserCode(kSpecialRow, kSpecialRow, 0);
    programUserCode(0, 0, kLeaveWait);
    instruction(kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(kPromBypass);
    instruction(kPromEnterProgramming);
    xsvf.XSDRSIZE(kModeBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(0x08, 0);
    xsvf.XSDRSIZE(kAddressBits);
    xsvf.XTDOMASK(0);
    xsvf.XSDRTDO(kSpecialRow, 0);
    instruction(kPromUserCode);
    xsvf.XSDRSIZE(kUserCodeBits);
    xsvf.XTDOMASK(kWholeUserCode);
    xsvf.XSDRTDO(kBlankUserCode, kBypassBitAsOne);
    xsvf.XRUNTEST(kLeaveWait);
    instruction(kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(kPromBypass);
    xsvf.XCOMPLETE();
});

constexpr bool holds(std::size_t offset, uint64_t number) {
    for (std::size_t index = 0; index < kUserCodeBytes; ++index) {
        if (kWrite.bytes[offset + index] != XsvfValue(number).byteAt(kUserCodeBytes - 1 - index)) {
            return false;
        }
    }
    return true;
}

static_assert(kProtect.size == 169);
static_assert(kRead.size == 104);
static_assert(kWrite.size == 310);
static_assert(holds(kIdentityOffsets[0], kBlankUserCode));
static_assert(holds(kIdentityOffsets[1], kBlankUserCode));
static_assert(holds(kIdentityOffsets[2], kBlankUserCode));
static_assert(holds(kIdentityOffsets[3], kWholeUserCode));

}  // namespace

constexpr std::array<uint8_t, 169> kProtectProgram = kProtect.bytes;
constexpr std::array<uint8_t, 104> kReadProgram = kRead.bytes;
constexpr std::array<uint8_t, 310> kWriteProgram = kWrite.bytes;

void PatchIdentity(std::span<uint8_t, 310> program, uint32_t identity) {
    const uint64_t shifted = uint64_t{identity} << 1;
    for (const std::size_t offset : kIdentityOffsets) {
        for (std::size_t index = 0; index < kUserCodeBytes; ++index) {
            program[offset + index] = XsvfValue(shifted).byteAt(kUserCodeBytes - 1 - index);
        }
    }
}
