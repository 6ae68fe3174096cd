#include "xsvf/Player.h"

#include "xsvf/Commands.h"
#include "xsvf/JtagPort.h"
#include "xsvf/TapMoves.h"
#include "xsvf/Trace.h"

int32_t xsvf_iDebugLevel = 0;

void DoXsvf(tagSXsvfInfo* info, uint8_t* image, uint32_t length, uint32_t* outputRegister,
            uint32_t* inputRegister) {
    openPort(image, length, outputRegister, inputRegister);
    setPort(kPortTMS, 1);
    xsvfExecute(info);
    idlePort();
}

int32_t xsvfExecute(tagSXsvfInfo* info) {
    xsvfInitialize(info);
    while (info->iResult == kXsvfNoError && info->ucIsComplete == 0) {
        xsvfRun(info);
    }
    xsvfCleanup(info);
    return info->iResult;
}

int32_t xsvfInitialize(tagSXsvfInfo* info) {
    info->iResult = xsvfInfoInit(info);
    if (info->iResult == kXsvfNoError) {
        info->iResult = xsvfGotoTapState(&info->ucCurrentState, kTapTestLogicReset);
    }
    return info->iResult;
}

int32_t xsvfRun(tagSXsvfInfo* info) {
    readByte(&info->ucOpcode);
    ++info->lCommandsRead;
    const XsvfHandler handler =
        info->ucOpcode < kXsvfOpcodes ? xsvf_pfDoCmd[info->ucOpcode] : xsvfDoIllegalCmd;
    handler(info);
    return info->iResult;
}

void xsvfCleanup(tagSXsvfInfo* info) {
    xsvfInfoCleanup(info);
}
