#include "xsvf/Commands.h"

#include "xsvf/JtagPort.h"
#include "xsvf/Shifts.h"
#include "xsvf/TapMoves.h"
#include "xsvf/Trace.h"

namespace {

int32_t report(tagSXsvfInfo* info, int32_t error) {
    if (error != kXsvfNoError) {
        info->iResult = error;
    }
    return error;
}

bool opcodeIs(const tagSXsvfInfo* info, XsvfOpcode opcode) {
    return info->ucOpcode == static_cast<uint8_t>(opcode);
}

uint8_t readOperandByte() {
    uint8_t byte = 0;
    readByte(&byte);
    return byte;
}

int32_t readOperandNumber(tagSXsvfInfo* info) {
    readVal(&info->lvShiftIn, 4);
    return static_cast<int32_t>(value(&info->lvShiftIn));
}

void traceMask(const var_len_byte* mask) {
    if (xsvf_iDebugLevel > kTraceShifts) {
        xsvfPrintLenVal(mask);
    }
}

int32_t shiftCompared(tagSXsvfInfo* info) {
    return xsvfShift(&info->ucCurrentState, kTapShiftDR, info->lDrBits, &info->lvShiftIn, &info->lvCaptured,
                     &info->lvExpected, &info->lvCompareMask, info->ucDrEndState, info->lWaitMicroseconds,
                     info->ucRetryLimit);
}

// The B and C forms leave the scan open for the next part of a long bit string; the E forms close it.
int32_t shiftPart(tagSXsvfInfo* info, XsvfOpcode closingForm, var_len_byte* captured,
                  var_len_byte* expected) {
    const uint8_t endState = opcodeIs(info, closingForm) ? info->ucDrEndState : kTapShiftDR;
    return xsvfBasicXSDRTDO(&info->ucCurrentState, info->lDrBits, info->sDrBytes, &info->lvShiftIn, captured,
                            expected, nullptr, endState, 0, 0);
}

int32_t countBits(const var_len_byte* mask) {
    int32_t bits = 0;
    for (int32_t index = 0; index < mask->sByteCount; ++index) {
        for (uint32_t rest = mask->aucValue[index]; rest != 0; rest >>= 1) {
            bits += static_cast<int32_t>(rest & 1);
        }
    }
    return bits;
}

int32_t shiftSteps(tagSXsvfInfo* info) {
    if (info->lvDataFieldMask.sByteCount > kXsvfLongestStepMask) {
        return kXsvfDataOverflow;
    }
    const int16_t stepBytes = xsvfGetAsNumBytes(countBits(&info->lvDataFieldMask));
    int32_t error = kXsvfNoError;
    for (uint8_t steps = readOperandByte(); steps > 0 && error == kXsvfNoError; --steps) {
        readVal(&info->lvNextDataBits, stepBytes);
        xsvfDoSDRMasking(&info->lvShiftIn, &info->lvNextDataBits, &info->lvIncrementMask,
                         &info->lvDataFieldMask);
        error = shiftCompared(info);
    }
    return error;
}

}  // namespace

const XsvfHandler xsvf_pfDoCmd[kXsvfOpcodes] = {
    xsvfDoXCOMPLETE,     // 0
    xsvfDoXTDOMASK,      // 1
    xsvfDoXSIR,          // 2
    xsvfDoXSDR,          // 3
    xsvfDoXRUNTEST,      // 4
    xsvfDoIllegalCmd,    // 5
    xsvfDoIllegalCmd,    // 6
    xsvfDoXREPEAT,       // 7
    xsvfDoXSDRSIZE,      // 8
    xsvfDoXSDRTDO,       // 9
    xsvfDoXSETSDRMASKS,  // 10
    xsvfDoXSDRINC,       // 11
    xsvfDoXSDRBCE,       // 12 XSDRB
    xsvfDoXSDRBCE,       // 13 XSDRC
    xsvfDoXSDRBCE,       // 14 XSDRE
    xsvfDoXSDRTDOBCE,    // 15 XSDRTDOB
    xsvfDoXSDRTDOBCE,    // 16 XSDRTDOC
    xsvfDoXSDRTDOBCE,    // 17 XSDRTDOE
    xsvfDoXSTATE,        // 18
    xsvfDoXENDXR,        // 19 XENDIR
    xsvfDoXENDXR,        // 20 XENDDR
};

int32_t xsvfDoIllegalCmd(tagSXsvfInfo* info) {
    return report(info, kXsvfIllegalCommand);
}

int32_t xsvfDoXCOMPLETE(tagSXsvfInfo* info) {
    info->ucIsComplete = 1;
    return kXsvfNoError;
}

int32_t xsvfDoXTDOMASK(tagSXsvfInfo* info) {
    readVal(&info->lvCompareMask, info->sDrBytes);
    traceMask(&info->lvCompareMask);
    return kXsvfNoError;
}

int32_t xsvfDoXSIR(tagSXsvfInfo* info) {
    const uint8_t bits = readOperandByte();
    const int16_t bytes = xsvfGetAsNumBytes(bits);
    if (bytes > MAX_LEN) {
        return report(info, kXsvfDataOverflow);
    }
    readVal(&info->lvShiftIn, bytes);
    return report(info, xsvfShift(&info->ucCurrentState, kTapShiftIR, bits, &info->lvShiftIn, nullptr,
                                  nullptr, nullptr, info->ucIrEndState, info->lWaitMicroseconds, 0));
}

int32_t xsvfDoXSDR(tagSXsvfInfo* info) {
    readVal(&info->lvShiftIn, info->sDrBytes);
    return report(info, shiftCompared(info));
}

int32_t xsvfDoXRUNTEST(tagSXsvfInfo* info) {
    info->lWaitMicroseconds = readOperandNumber(info);
    return kXsvfNoError;
}

int32_t xsvfDoXREPEAT(tagSXsvfInfo* info) {
    info->ucRetryLimit = readOperandByte();
    return kXsvfNoError;
}

int32_t xsvfDoXSDRSIZE(tagSXsvfInfo* info) {
    info->lDrBits = readOperandNumber(info);
    info->sDrBytes = xsvfGetAsNumBytes(info->lDrBits);
    return report(info, info->sDrBytes > MAX_LEN ? kXsvfDataOverflow : kXsvfNoError);
}

int32_t xsvfDoXSDRTDO(tagSXsvfInfo* info) {
    return report(
        info, xsvfBasicXSDRTDO(&info->ucCurrentState, info->lDrBits, info->sDrBytes, &info->lvShiftIn,
                               &info->lvCaptured, &info->lvExpected, &info->lvCompareMask, info->ucDrEndState,
                               info->lWaitMicroseconds, info->ucRetryLimit));
}

int32_t xsvfDoXSETSDRMASKS(tagSXsvfInfo* info) {
    readVal(&info->lvIncrementMask, info->sDrBytes);
    readVal(&info->lvDataFieldMask, info->sDrBytes);
    traceMask(&info->lvIncrementMask);
    traceMask(&info->lvDataFieldMask);
    return kXsvfNoError;
}

int32_t xsvfDoXSDRINC(tagSXsvfInfo* info) {
    readVal(&info->lvShiftIn, info->sDrBytes);
    int32_t error = shiftCompared(info);
    if (error == kXsvfNoError) {
        error = shiftSteps(info);
    }
    return report(info, error);
}

int32_t xsvfDoXSDRBCE(tagSXsvfInfo* info) {
    return report(info, shiftPart(info, XsvfOpcode::XSDRE, nullptr, nullptr));
}

int32_t xsvfDoXSDRTDOBCE(tagSXsvfInfo* info) {
    return report(info, shiftPart(info, XsvfOpcode::XSDRTDOE, &info->lvCaptured, &info->lvExpected));
}

int32_t xsvfDoXSTATE(tagSXsvfInfo* info) {
    return report(info, xsvfGotoTapState(&info->ucCurrentState, readOperandByte()));
}

int32_t xsvfDoXENDXR(tagSXsvfInfo* info) {
    const bool instruction = opcodeIs(info, XsvfOpcode::XENDIR);
    uint8_t& endState = instruction ? info->ucIrEndState : info->ucDrEndState;
    readByte(&endState);
    if (endState > kXsvfEndPause) {
        return report(info, kXsvfIllegalState);
    }
    if (endState == kXsvfEndPause) {
        endState = instruction ? kTapPauseIR : kTapPauseDR;
    } else {
        endState = kTapRunTestIdle;
    }
    return kXsvfNoError;
}
