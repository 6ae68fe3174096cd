// CUpdaterApp's view of a card: opening the chosen one, reading it, showing it, choosing its firmware.

#include <cstdio>
#include <optional>

#include "app/ApplicationHooks.h"
#include "app/CUpdaterApp.h"
#include "app/ResourceIDs.h"
#include "app/logic/CardValues.h"
#include "app/logic/FirmwareFiles.h"
#include "app/logic/WriteTime.h"
#include "card/CardAccess.h"
#include "card/Registers.h"
#include "catalogue/BoardRevision.h"
#include "catalogue/CardIdentity.h"
#include "catalogue/CardModels.h"
#include "catalogue/Dates.h"
#include "catalogue/FirmwareVersion.h"
#include "framework/core/LException.h"
#include "framework/widgets/LPopupButton.h"
#include "framework/widgets/LWindow.h"
#include "framework/widgets/UModalDialogs.h"
#include "hw/PromOperations.h"

namespace {

// Shown until the value has been read, in place of the previous card's.
constexpr const char* kNotKnownYet = "–";

uint16_t readLowHalf(uint32_t offsetBytes) {
    return static_cast<uint16_t>(MacReadULONG(RegisterAt(offsetBytes)));
}

// Sets gbSwap to the order in which the byte-swap identification is correct. Returns false if neither is.
bool decideByteOrder() {
    for (const uint8_t byteSwap : {uint8_t{1}, uint8_t{0}}) {
        gbSwap = byteSwap;
        if (readLowHalf(kByteSwapIDRegister) == kByteSwapID) {
            return true;
        }
    }
    return false;
}

}  // namespace

void CUpdaterApp::UpdateCardInfo() {
    auto* const popup = ThrowIfNil(dynamic_cast<LPopupButton*>(mMainWindow->FindPaneByID(kCardPopupPane)));
    mFirmwareIsCurrent = false;
    const int32_t item = popup->GetValue();
    if (item == mCurrentCardItem) {
        return;
    }
    uint16_t firmwareVersion = 0;
    if (!OpenChosenCard(item) || !ReadCardRegisters(firmwareVersion) || !ReadCardIdentity()) {
        KeepException([this] { WarnOfIncompleteCards(); });
        DoQuit(kSaveOptionAsk);
        return;
    }
    ChooseFirmwareForCard(static_cast<uint8_t>(firmwareVersion));
}

bool CUpdaterApp::OpenChosenCard(int32_t item) {
    if (mCardConnection != 0) {
        CloseCard(mCardConnection);
        mCardConnection = 0;
        gpRegisters = nullptr;
    }
    mCurrentCardItem = item;
    for (const PaneIDT pane : {kModelPane, kBoardRevisionPane, kFirmwareVersionPane, kFirmwareDatePane,
                               kSerialNumberPane, kManufactureDatePane}) {
        SetWindowItemText(mMainWindow, pane, kNotKnownYet);
    }
    SetWindowItemText(mMainWindow, kFirmwareStatePane, "");
    SetWindowItemText(mMainWindow, kWriteTimePane, "");
    void* base = nullptr;
    uint32_t bytes = 0;
    mCardConnection = OpenCard(item - 1, &base, &bytes, nullptr, nullptr);
    if (mCardConnection == 0) {
        UModalAlerts::Alert(kCardUnreachableAlert);
        return false;
    }
    gpRegisters = static_cast<uint32_t*>(base);
    return true;
}

bool CUpdaterApp::ReadCardRegisters(uint16_t& outFirmwareVersion) {
    if (!decideByteOrder()) {
        ShowAlert("Byte Swap Error", "Unable to properly read the Byte Swap ID!");
        return false;
    }
    gusDeviceID = readLowHalf(kDeviceIDRegister);
    if (!catalogue::isModelCode(gusDeviceID)) {
        ShowAlert("Error", "Unable to properly read the VornMX/K40/DX8 Device ID!");
        return false;
    }
    gusPCBRev = readLowHalf(kBoardRevisionRegister);
    outFirmwareVersion = readLowHalf(kFirmwareVersionRegister);
    const uint16_t firmwareDate = readLowHalf(kFirmwareDateRegister);
    // Cards are known to accept this sequence of reads, so this one stays although its value is not used.
    readLowHalf(kReservedRegister);

    SetWindowItemText(mMainWindow, kModelPane, catalogue::modelName(gusDeviceID).c_str());
    SetWindowItemText(mMainWindow, kBoardRevisionPane, catalogue::boardRevisionText(gusPCBRev).c_str());
    SetWindowItemText(
        mMainWindow, kFirmwareVersionPane,
        catalogue::firmwareVersionText(ByteOrderLetter(gbSwap), outFirmwareVersion & 0xFF).c_str());
    SetWindowItemText(mMainWindow, kFirmwareDatePane, catalogue::firmwareDateText(firmwareDate).c_str());
    return true;
}

bool CUpdaterApp::ReadCardIdentity() {
    if (GetSerialNumber(&gSerialNumber) != 0) {
        gSerialNumber = 0;
    }
    const auto askForIdentity = [this] {
        if (GetSerialNumberDialog()) {
            return true;
        }
        std::fputs("GetSerialNumberDialog returned false\n", stderr);
        return false;
    };
    if (catalogue::isBlankIdentity(gSerialNumber) && !askForIdentity()) {
        return false;
    }
    while (!catalogue::isModelCode(catalogue::identityModelCode(gSerialNumber))) {
        ShowAlert("Error", "Unable to properly determine the Serial Number of the VornMX/K40/DX8!");
        if (!askForIdentity()) {
            return false;
        }
    }
    if (catalogue::identityModelCode(gSerialNumber) != gusDeviceID) {
        ShowAlert("Error", "VornMX/K40/DX8 Serial Number does not match Device ID!");
        return false;
    }
    SetWindowItemText(mMainWindow, kSerialNumberPane, catalogue::serialNumberText(gSerialNumber).c_str());
    SetWindowItemText(mMainWindow, kManufactureDatePane,
                      catalogue::manufactureDateText(gSerialNumber).c_str());
    return true;
}

void CUpdaterApp::ChooseFirmwareForCard(uint8_t firmwareVersion) {
    ChooseFirmware(gusDeviceID, gusPCBRev);
    if (gNewFirmware == kNoFirmware) {
        ShowAlert("Error", "Unable to determine New Firmware Version!");
        gusNewFirmwareRev = 0;
        ShowFirmwareState();
        return;
    }
    std::fprintf(stderr, "Will use %s for firmware\n", gszResourcePaths[gNewFirmware]);
    const char letter = FirmwareByteOrderLetter(gszResourceNames[gNewFirmware]);
    SetWindowItemText(mMainWindow, kNewFirmwarePane,
                      catalogue::firmwareVersionText(letter, gusNewFirmwareRev).c_str());
    mFirmwareIsCurrent =
        IsFirmwareCurrent(ByteOrderLetter(gbSwap), firmwareVersion, letter, gusNewFirmwareRev);
    ShowFirmwareState();
    const char* const image = gszResourcePaths[gNewFirmware];
    const auto loadTime = mSetup.loadTime ? std::optional(mSetup.loadTime()) : std::nullopt;
    SetWindowItemText(mMainWindow, kWriteTimePane, WriteTimeText(image, loadTime).c_str());
}

void CUpdaterApp::ShowFirmwareState() {
    const char* text = "Newer firmware is available";
    if (gNewFirmware == kNoFirmware) {
        text = "No firmware for this card";
    } else if (mIncompleteCardItems.contains(mCurrentCardItem)) {
        text = "The last update failed";
    } else if (mFirmwareIsCurrent) {
        text = "This card has the newest firmware";
    } else if (FirmwareByteOrderLetter(gszResourceNames[gNewFirmware]) != ByteOrderLetter(gbSwap)) {
        // Versions with different byte orders cannot be compared.
        text = "Other firmware is available";
    }
    SetWindowItemText(mMainWindow, kFirmwareStatePane, text);
}
