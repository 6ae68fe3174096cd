#include "xsvf/StateRecord.h"

int32_t xsvfInfoInit(tagSXsvfInfo* info) {
    info->ucIsComplete = 0;
    info->ucOpcode = 0;
    info->lCommandsRead = 0;
    info->iResult = kXsvfNoError;
    info->ucCurrentState = kTapTestLogicReset;
    info->ucIrEndState = kTapRunTestIdle;
    info->ucDrEndState = kTapRunTestIdle;
    info->ucRetryLimit = 0;
    info->lWaitMicroseconds = 0;
    info->lDrBits = 0;
    info->sDrBytes = 0;
    return kXsvfNoError;
}

void xsvfInfoCleanup(tagSXsvfInfo*) {}

const char* xsvfErrorText(int32_t error) {
    switch (error) {
        case kXsvfNoError:
            return "No error";
        case kXsvfTdoMismatch:
            return "ERROR:  TDO mismatch";
        case kXsvfMaxRetries:
            return "ERROR:  TDO mismatch and exceeded max retries";
        case kXsvfIllegalCommand:
            return "ERROR:  Unsupported XSVF command";
        case kXsvfIllegalState:
            return "ERROR:  Illegal state specification";
        case kXsvfDataOverflow:
            return "ERROR:  Data overflows allocated MAX_LEN buffer size";
        default:
            return "ERROR:  Unknown";
    }
}
