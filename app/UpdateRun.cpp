// CUpdaterApp's firmware update: load, confirm, write.

#include "app/Alert.h"
#include "app/CUpdaterApp.h"
#include "app/PaneIDs.h"
#include "app/Progress.h"
#include "app/logic/CardModel.h"
#include "app/logic/CardValues.h"
#include "app/logic/FirmwareFiles.h"
#include "app/logic/FirmwareImage.h"
#include "app/logic/FormatText.h"
#include "framework/widgets/LProgressBar.h"
#include "framework/widgets/LWindow.h"
#include "hw/PromOperations.h"

namespace {

// Passes of the event loop before the write, so that the window has taken on the new look.
constexpr int kPassesBeforeWriting = 50;

bool confirmUpdate() {
    const std::string text = FormatText("About to program your %s with Firmware Version %d",
                                        ModelName(gusDeviceID).c_str(), gusNewFirmwareRev);
    return ShowAlert("Firmware Update Confirmation", text.c_str());
}

}  // namespace

void CUpdaterApp::UpdateFirmware() {
    if (gNewFirmware == kNoFirmware) {
        ShowAlert("Error", "Could not find suitable firmware for the selected card.");
        return;
    }
    // OK leaves the card as it is; Cancel is how a card is deliberately written again.
    if (mFirmwareIsCurrent && ShowAlert("Error", "The firmware on your card is already up to date!")) {
        return;
    }
    FirmwareImageError error;
    const auto image = LoadFirmwareImage(gszResourcePaths[gNewFirmware], error);
    if (!image) {
        ShowAlert(error.title, error.message);
        return;
    }
    if (confirmUpdate()) {
        WriteFirmware(image->bytes.get(), image->size);
    }
    UpdateWindowState();
}

void CUpdaterApp::WriteFirmware(uint8_t* image, uint32_t bytes) {
    gProgressMax = bytes;
    gpProgressBar = dynamic_cast<LProgressBar*>(mMainWindow->FindPaneByID(kProgressBarPane));
    UpdateProgressBar(0);
    mWindowState = kWindowUpdating;
    UpdateWindowState();
    for (int pass = 0; pass < kPassesBeforeWriting; ++pass) {
        ProcessNextEvent();
    }
    const uint16_t error = ProgramConfigProm(image, bytes);
    // What was clicked and typed since the last pass was meant for the window as it still is, not for the
    // buttons that are about to appear.
    ProcessNextEvent();
    if (error != 0) {
        ShowAlert(
            "EEPROM Programming Failure",
            "Updating the Firmware on the VornMX/K40/DX8 FAILED!\n"
            "Do NOT turn off the power to your computer before successfully updating the VornMX/K40/DX8 "
            "Firmware!");
        mWindowState = kWindowIdle;
    } else {
        mWindowState = kWindowFinished;
    }
}
