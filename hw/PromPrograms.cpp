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

// Every data value here is one bit higher than in the PROM's register, above the FPGA's bypass bit.

// The identification code that each program expects. Protecting accepts every version (bits 28-31) and the
// eight parts that bits 16-18 distinguish; reading accepts every part with the same bits 0-15 and 19-23, and
// also compares the bypass bit.
constexpr uint64_t kProtectCodeMask = 0x001FF1FFFE;
constexpr uint64_t kProtectCode = 0x01EA06A126;
constexpr uint64_t kReadCodeMask = 0x0001F1FFFF;
constexpr uint64_t kReadCode = 0x000A04A126;
constexpr uint64_t kOnesAboveBypass = 0x01FFFFFFFE;

constexpr uint64_t kCompareNothing = 0;

// The data with which programming mode is entered.
constexpr uint64_t kProtectMode = 0x68;
constexpr uint64_t kUserCodeMode = 0x08;

// Both protection bits.
constexpr uint64_t kProtected = 0x06;

// The row that holds the user code and the protection bits.
constexpr uint64_t kSpecialRow = 0x010000;

// A blank identity; PatchIdentity replaces it in each write step.
constexpr uint64_t kBlankUserCode = 0x01FFFFFFFE;
constexpr uint64_t kWholeUserCode = 0x01FFFFFFFF;
constexpr uint64_t kBypassBitAsOne = 0x00FFFFFFFF;

// Microseconds.
constexpr uint32_t kAddressWait = 2;
constexpr uint32_t kProgramWait = 14000;
constexpr uint32_t kProtectWait = 14001;
constexpr uint32_t kControlReadWait = 51;
constexpr uint32_t kLeaveWait = 4000;
constexpr uint32_t kProtectLeaveWait = 110000;

constexpr auto instruction = [](auto& xsvf, uint16_t code) { xsvf.XSIR(kChainInstructionBits, code); };

constexpr auto enterProgramming = [](auto& xsvf, uint64_t mode) {
    instruction(xsvf, kPromEnterProgramming);
    xsvf.XSDRSIZE(kModeBits);
    xsvf.XTDOMASK(kCompareNothing);
    xsvf.XSDRTDO(mode, 0);
};

// The comparison expects the bypass bit as 1, which no working chain delivers, so reading stops here with the
// user code captured. For writing, PatchIdentity narrows the mask to what must be verified.
constexpr auto enterAndReadUserCode = [](auto& xsvf) {
    enterProgramming(xsvf, kUserCodeMode);
    xsvf.XSDRSIZE(kAddressBits);
    xsvf.XTDOMASK(kCompareNothing);
    xsvf.XSDRTDO(kSpecialRow, 0);
    instruction(xsvf, kPromUserCode);
    xsvf.XSDRSIZE(kUserCodeBits);
    xsvf.XTDOMASK(kWholeUserCode);
    xsvf.XSDRTDO(kBlankUserCode, kBypassBitAsOne);
};

constexpr auto kProtect = assembleXsvf<kProtectProgramSize>([](auto& xsvf) {
    xsvf.XREPEAT(0);
    xsvf.XSTATE(kTapTestLogicReset);
    xsvf.XSTATE(kTapRunTestIdle);
    xsvf.XRUNTEST(0);
    instruction(xsvf, kPromBypass);
    instruction(xsvf, kPromIdentificationCode);
    xsvf.XSDRSIZE(kIdentificationBits);
    xsvf.XTDOMASK(kProtectCodeMask);
    xsvf.XSDRTDO(0, kProtectCode);
    xsvf.XRUNTEST(kProtectLeaveWait);
    instruction(xsvf, kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    enterProgramming(xsvf, kProtectMode);
    instruction(xsvf, kPromAddress);
    xsvf.XRUNTEST(kAddressWait);
    xsvf.XSDRSIZE(kAddressBits);
    xsvf.XTDOMASK(kCompareNothing);
    xsvf.XSDRTDO(kSpecialRow, 0);
    xsvf.XRUNTEST(0);
    instruction(xsvf, kPromControlData);
    xsvf.XSDRSIZE(kControlBits);
    xsvf.XTDOMASK(kCompareNothing);
    xsvf.XSDRTDO(kProtected, 0);
    xsvf.XRUNTEST(kProtectWait);
    instruction(xsvf, kPromProgram);
    xsvf.XRUNTEST(kControlReadWait);
    instruction(xsvf, kPromControlRead);
    xsvf.XTDOMASK(kCompareNothing);
    xsvf.XSDRTDO(kProtected, kProtected);
    xsvf.XRUNTEST(kProtectLeaveWait);
    instruction(xsvf, kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(xsvf, kPromBypass);
    instruction(xsvf, kPromBypass);
    xsvf.XSDRSIZE(kBothBypassedBits);
    xsvf.XTDOMASK(kCompareNothing);
    xsvf.XSDRTDO(0, 0);
    xsvf.XCOMPLETE();
});

constexpr auto kRead = assembleXsvf<kReadProgramSize>([](auto& xsvf) {
    xsvf.XREPEAT(8);
    xsvf.XSTATE(kTapRunTestIdle);
    xsvf.XRUNTEST(0);
    instruction(xsvf, kPromBypass);
    instruction(xsvf, kPromIdentificationCode);
    xsvf.XSDRSIZE(kIdentificationBits);
    xsvf.XTDOMASK(kReadCodeMask);
    xsvf.XSDRTDO(kOnesAboveBypass, kReadCode);
    instruction(xsvf, kPromBypass);
    enterAndReadUserCode(xsvf);
    instruction(xsvf, kPromBypass);
    xsvf.XCOMPLETE();
});

constexpr auto kWrite = assembleXsvf<kWriteProgramSize>([](auto& xsvf) {
    const auto programUserCode = [&](uint64_t addressMask, uint64_t expectedAddress, uint32_t waitAfter) {
        instruction(xsvf, kPromAddress);
        xsvf.XSDRSIZE(kAddressBits);
        xsvf.XTDOMASK(addressMask);
        xsvf.XSDRTDO(kSpecialRow, expectedAddress);
        instruction(xsvf, kPromUserCode);
        xsvf.XSDRSIZE(kUserCodeBits);
        xsvf.XTDOMASK(kCompareNothing);
        xsvf.XSDRTDO(kBlankUserCode, 0);
        xsvf.XRUNTEST(kProgramWait);
        instruction(xsvf, kPromProgram);
        xsvf.XRUNTEST(waitAfter);
    };
    xsvf.XREPEAT(0);
    xsvf.XSTATE(kTapTestLogicReset);
    xsvf.XSTATE(kTapRunTestIdle);
    xsvf.XRUNTEST(kLeaveWait);
    instruction(xsvf, kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(xsvf, kPromBypass);
    instruction(xsvf, kPromBypass);
    enterProgramming(xsvf, kUserCodeMode);
    programUserCode(kCompareNothing, 0, 0);
    programUserCode(kSpecialRow, kSpecialRow, 0);
    programUserCode(kCompareNothing, 0, kLeaveWait);
    instruction(xsvf, kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(xsvf, kPromBypass);
    enterAndReadUserCode(xsvf);
    xsvf.XRUNTEST(kLeaveWait);
    instruction(xsvf, kPromLeaveProgramming);
    xsvf.XRUNTEST(0);
    instruction(xsvf, kPromBypass);
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

static_assert(kProtect.size == kProtectProgramSize);
static_assert(kRead.size == kReadProgramSize);
static_assert(kWrite.size == kWriteProgramSize);
static_assert(holds(kIdentityOffsets[0], kBlankUserCode));
static_assert(holds(kIdentityOffsets[1], kBlankUserCode));
static_assert(holds(kIdentityOffsets[2], kBlankUserCode));
static_assert(holds(kIdentityOffsets[3], kWholeUserCode));

}  // namespace

constexpr std::array<uint8_t, kProtectProgramSize> kProtectProgram = kProtect.bytes;
constexpr std::array<uint8_t, kReadProgramSize> kReadProgram = kRead.bytes;
constexpr std::array<uint8_t, kWriteProgramSize> kWriteProgram = kWrite.bytes;

void PatchIdentity(std::span<uint8_t, kWriteProgramSize> program, uint32_t identity) {
    const uint64_t shifted = uint64_t{identity} << 1;
    for (const std::size_t offset : kIdentityOffsets) {
        for (std::size_t index = 0; index < kUserCodeBytes; ++index) {
            program[offset + index] = XsvfValue(shifted).byteAt(kUserCodeBytes - 1 - index);
        }
    }
}
