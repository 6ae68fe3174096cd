#pragma once

// The window's texts and states in an update of the default machine's first card to version 12.

#include "tests/whole/UpdaterSession.h"

inline constexpr const char* imageName = "VMBM12A.xsv";
inline constexpr const char* idlePanes = "ITX0 ITX1 ITX2 CLOS UPDT";
inline constexpr const char* finishedPanes = "FTX0 FTX1 FTX2 POWR";
inline constexpr uint32_t identity = 0x21307015;

inline const UpdaterSession::Alert confirmation = {"Firmware Update Confirmation",
                                                   "About to program your VornMX-B with Firmware Version 12"};
inline const UpdaterSession::Alert noNewFirmware = {"Error", "Unable to determine New Firmware Version!"};
inline const UpdaterSession::Alert noSuitableFirmware = {
    "Error", "Could not find suitable firmware for the selected card."};
inline const UpdaterSession::Alert mismatch = {"TDO Mismatch Error after max retries",
                                               "EEPROM Programming Failure!"};
inline const UpdaterSession::Alert identityNotRead = {"Error 2",
                                                      "Unable to read Serial Number from VornMX/K40!"};
inline const UpdaterSession::Alert identityDiffers = {"Error", "Serial Number readback does not match!"};
inline const UpdaterSession::Alert failure = {
    "EEPROM Programming Failure",
    "Updating the Firmware on the VornMX/K40/DX8 FAILED!\nDo NOT turn off the power to your "
    "computer before successfully updating the VornMX/K40/DX8 Firmware!"};
