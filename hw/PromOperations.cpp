#include "hw/PromOperations.h"

#include "catalogue/CardIdentity.h"
#include "hw/ApplicationHooks.h"
#include "hw/JtagPort.h"
#include "hw/PromPrograms.h"
#include "xsvf/Trace.h"

namespace {

constexpr int32_t kSilent = -1;
constexpr int32_t kTraceFirmware = 1;

// Plays a copy: the port takes writable bytes.
template <typename Program>
void playSilently(tagSXsvfInfo* info, Program program) {
    xsvf_iDebugLevel = kSilent;
    PlayOnCard(info, program.data(), static_cast<uint32_t>(program.size()));
}

const char* failureTitle(int32_t error) {
    switch (error) {
        case kXsvfTdoMismatch:
            return "TDO Mismatch Error";
        case kXsvfMaxRetries:
            return "TDO Mismatch Error after max retries";
        case kXsvfIllegalCommand:
            return "Illegal Command Error";
        case kXsvfIllegalState:
            return "Illegal State Error";
        case kXsvfDataOverflow:
            return "Data Overflow Error";
        default:
            return "An Unknown Error has occurred";
    }
}

// Returns the player's error code, after an alert, or 0.
uint16_t playFirmware(uint8_t* image, uint32_t length) {
    tagSXsvfInfo info;
    xsvf_iDebugLevel = kTraceFirmware;
    PlayOnCard(&info, image, length);
    if (info.iResult != kXsvfNoError) {
        ShowAlert(failureTitle(info.iResult), "EEPROM Programming Failure!");
    }
    return static_cast<uint16_t>(info.iResult);
}

// A failure here must not hide the exception that broke the write off.
void restoreAfterException(uint32_t identity) {
    try {
        WriteSerialNumber(identity);
    } catch (...) {
        // The exception being handled already says why the card needs another write.
    }
}

}  // namespace

uint16_t ProtectEEPROM() {
    tagSXsvfInfo info;
    playSilently(&info, kProtectProgram);
    return info.iResult != kXsvfNoError ? 1 : 0;
}

uint16_t GetSerialNumber(uint32_t* identity) {
    tagSXsvfInfo info;
    playSilently(&info, kReadProgram);
    if (info.iResult == kXsvfNoError || info.lCommandsRead != kReadUserCodeCommand ||
        info.lvExpected.sByteCount != kUserCodeBytes) {
        return 1;
    }
    *identity = value(&info.lvCaptured) >> 1;
    return 0;
}

uint16_t WriteSerialNumber(uint32_t identity) {
    auto program = kWriteProgram;
    PatchIdentity(program, identity);
    tagSXsvfInfo info;
    playSilently(&info, program);
    if (info.iResult != kXsvfNoError) {
        ShowAlert("Error", "Error writing Serial Number!");
        return static_cast<uint16_t>(info.iResult);
    }

    // A failure to protect does not count: if the identity reads back, it is written.
    ProtectEEPROM();
    uint32_t readBack = 0;
    if (GetSerialNumber(&readBack) != 0) {
        ShowAlert("Error 2", "Unable to read Serial Number from VornMX/K40!");
        return 1;
    }
    if (readBack != identity) {
        ShowAlert("Error", "Serial Number readback does not match!");
        return 2;
    }
    return 0;
}

uint16_t ProgramConfigProm(uint8_t* image, uint32_t length) {
    const uint32_t identity = gSerialNumber;
    if (catalogue::isBlankIdentity(identity)) {
        ShowAlert("Error", "Serial Number is blank!");
    }

    uint16_t error = 0;
    try {
        error = playFirmware(image, length);
    } catch (...) {
        restoreAfterException(identity);
        throw;
    }
    const uint16_t identityError = WriteSerialNumber(identity);
    return error != 0 ? error : identityError;
}
