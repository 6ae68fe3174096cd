#include "hw/JtagPort.h"

#include "card/Registers.h"
#include "hw/ApplicationHooks.h"
#include "xsvf/JtagPort.h"
#include "xsvf/Player.h"

uint32_t gulControlReg = 0;
uint8_t* gpCurrentBufferBase = nullptr;
uint32_t gulCurrentOffset = 0;
uint32_t gulCurrentBufferLength = 0;

namespace {

uint32_t* gpOutputRegister = nullptr;
uint32_t* gpInputRegister = nullptr;

void setSignal(uint32_t signal, int16_t value) {
    if (value != 0) {
        gulControlReg |= signal;
    } else {
        gulControlReg &= ~signal;
    }
}

// Waits for a clock level to settle. Unrolled, because most of a firmware write is spent here and the loop
// itself would take a good part of it.
void settle(uint32_t* output) {
    constexpr int32_t kReads = kReadsPerMicrosecond * kSettlingMicroseconds;
#pragma GCC unroll kReads
    for (int32_t read = 0; read < kReads; ++read) {
        MacReadULONG(output);
    }
}

}  // namespace

void openPort(uint8_t* image, uint32_t length, uint32_t* outputRegister, uint32_t* inputRegister) {
    gpCurrentBufferBase = image;
    gulCurrentOffset = 0;
    gulCurrentBufferLength = length;
    gpOutputRegister = outputRegister;
    gpInputRegister = inputRegister;
    gulControlReg = kJtagActivity;
    MacWriteULONG(gpOutputRegister, gulControlReg);
}

void idlePort() {
    MacWriteULONG(gpOutputRegister, kJtagActivity);
}

void setPort(int16_t port, int16_t value) {
    switch (port) {
        case kPortTCK:
            setSignal(kJtagTCK, value);
            MacWriteULONG(gpOutputRegister, gulControlReg);
            settle(gpOutputRegister);
            break;
        case kPortTMS:
            setSignal(kJtagTMS, value);
            break;
        case kPortTDI:
            setSignal(kJtagTDI, value);
            break;
        default:
            break;
    }
}

void pulseClock() {
    setPort(kPortTCK, 0);
    setPort(kPortTCK, 1);
    setPort(kPortTCK, 0);
}

uint8_t readTDOBit() {
    return (MacReadULONG(gpInputRegister) & kJtagTDO) != 0 ? 1 : 0;
}

void waitTime(int32_t microseconds) {
    for (int64_t reads = int64_t{kReadsPerMicrosecond} * microseconds; reads > 0; --reads) {
        MacReadULONG(gpOutputRegister);
    }
}

void readByte(uint8_t* out) {
    *out = gpCurrentBufferBase[gulCurrentOffset];
    ++gulCurrentOffset;
    if (gulCurrentOffset % kEventBytes == 0) {
        AllowNextEvent();
    }
    if (gulCurrentOffset % kProgressBytes == 0) {
        gulControlReg ^= kJtagActivity;
        UpdateProgressBar(gulCurrentOffset);
    }
}

void PlayOnCard(tagSXsvfInfo* info, uint8_t* image, uint32_t length) {
    DoXsvf(info, image, length, RegisterAt(kJtagOutputRegister), RegisterAt(kJtagInputRegister));
}
