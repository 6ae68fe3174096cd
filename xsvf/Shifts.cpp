#include "xsvf/Shifts.h"

#include "xsvf/Format.h"
#include "xsvf/JtagPort.h"
#include "xsvf/TapMoves.h"
#include "xsvf/Trace.h"

namespace {

void trace(int32_t aboveLevel, const var_len_byte* first, const var_len_byte* second,
           const var_len_byte* third) {
    if (xsvf_iDebugLevel > aboveLevel) {
        xsvfPrintLenVal(first);
        xsvfPrintLenVal(second);
        xsvfPrintLenVal(third);
    }
}

void waitInIdle(uint8_t* state, int32_t microseconds) {
    if (microseconds != 0) {
        xsvfGotoTapState(state, kTapRunTestIdle);
        waitTime(microseconds);
    }
}

// A wait made a quarter longer; an absurdly long one wraps at 32 bits.
int32_t lengthened(int32_t wait) {
    return static_cast<int32_t>(static_cast<uint32_t>(wait) + static_cast<uint32_t>(wait >> 2));
}

}  // namespace

int16_t xsvfGetAsNumBytes(int32_t bits) {
    const int32_t rounded = static_cast<int32_t>(static_cast<uint32_t>(bits) + 7);
    return static_cast<int16_t>(rounded / 8);
}

void xsvfShiftOnly(int32_t bits, const var_len_byte* in, var_len_byte* captured) {
    if (captured != nullptr) {
        captured->sByteCount = in->sByteCount;
    }
    int32_t index = in->sByteCount;
    while (bits > 0) {
        --index;
        uint32_t tdi = index >= 0 ? in->aucValue[index] : 0;
        uint32_t tdo = 0;
        for (int32_t bit = 0; bit < 8 && bits > 0; ++bit) {
            if (captured != nullptr) {
                tdo |= static_cast<uint32_t>(readTDOBit()) << bit;
            }
            setPort(kPortTDI, static_cast<int16_t>(tdi & 1));
            tdi >>= 1;
            --bits;
            if (bits > 0) {
                pulseClock();
            }
        }
        if (captured != nullptr && index >= 0) {
            captured->aucValue[index] = static_cast<uint8_t>(tdo);
        }
    }
}

int32_t xsvfShift(uint8_t* state, uint8_t startState, int32_t bits, const var_len_byte* in,
                  var_len_byte* captured, const var_len_byte* expected, const var_len_byte* mask,
                  uint8_t endState, int32_t waitMicroseconds, uint8_t retryLimit) {
    if (bits == 0) {
        waitInIdle(state, waitMicroseconds);
        return kXsvfNoError;
    }
    trace(kTraceShifts, in, expected, mask);

    // Counts failures, the last one included, so it exceeds the limit only after all retries. With a limit of
    // 255 it wraps to 0, and the failure counts as one without retries.
    uint8_t attempt = 0;
    bool mismatch = false;
    bool again = false;
    do {
        xsvfGotoTapState(state, startState);
        xsvfShiftOnly(bits, in, captured);
        if (expected != nullptr) {
            mismatch = EqualLenVal(expected, captured, mask) == 0;
        }
        again = mismatch && attempt < retryLimit;

        if (startState == endState) {
            pulseClock();
        } else {
            if (again && waitMicroseconds != 0) {
                trace(kTraceShifts, expected, captured, mask);
                xsvfGotoTapState(state, kTapPauseDR);
                xsvfGotoTapState(state, kTapShiftDR);
                waitMicroseconds = lengthened(waitMicroseconds);
            } else {
                xsvfGotoTapState(state, endState);
            }
            waitInIdle(state, waitMicroseconds);
        }
        if (mismatch) {
            ++attempt;
        }
    } while (again);

    if (!mismatch) {
        return kXsvfNoError;
    }
    trace(kTraceMismatches, expected, captured, mask);
    return retryLimit != 0 && attempt > retryLimit ? kXsvfMaxRetries : kXsvfTdoMismatch;
}

int32_t xsvfBasicXSDRTDO(uint8_t* state, int32_t bits, int16_t bytes, var_len_byte* in,
                         var_len_byte* captured, var_len_byte* expected, const var_len_byte* mask,
                         uint8_t endState, int32_t waitMicroseconds, uint8_t retryLimit) {
    readVal(in, bytes);
    if (expected != nullptr) {
        readVal(expected, bytes);
    }
    return xsvfShift(state, kTapShiftDR, bits, in, captured, expected, mask, endState, waitMicroseconds,
                     retryLimit);
}

void xsvfDoSDRMasking(var_len_byte* data, const var_len_byte* nextData, const var_len_byte* incrementMask,
                      const var_len_byte* dataMask) {
    addVal(data, data, incrementMask);

    int32_t nextBit = 0;
    for (int32_t index = dataMask->sByteCount - 1; index >= 0; --index) {
        for (int32_t bit = 0; bit < 8; ++bit) {
            const int32_t position = 1 << bit;
            if ((dataMask->aucValue[index] & position) == 0) {
                continue;
            }
            const int32_t nextIndex = nextData->sByteCount - 1 - nextBit / 8;
            const bool set = nextIndex >= 0 && ((nextData->aucValue[nextIndex] >> (nextBit % 8)) & 1) != 0;
            const int32_t cleared = data->aucValue[index] & ~position;
            data->aucValue[index] = static_cast<uint8_t>(set ? cleared | position : cleared);
            ++nextBit;
        }
    }
}
