// CUpdaterApp's firmware update: load, confirm, write.

#include "app/ApplicationHooks.h"
#include "app/CUpdaterApp.h"
#include "app/ResourceIDs.h"
#include "app/logic/CardValues.h"
#include "app/logic/FirmwareFiles.h"
#include "app/logic/FirmwareImage.h"
#include "catalogue/CardModels.h"
#include "framework/core/LException.h"
#include "framework/widgets/DisplayWatchdog.h"
#include "framework/widgets/LPopupButton.h"
#include "framework/widgets/LProgressBar.h"
#include "framework/widgets/LWindow.h"
#include "hw/PromOperations.h"

namespace {

// Passes of the event loop before the write, so that the window shows its new state.
constexpr int kPassesBeforeWriting = 50;

constexpr uint16_t kWriteBrokenOff = 0xFFFF;

bool confirmUpdate() {
    const std::string text = "About to program your " + catalogue::modelName(gusDeviceID) +
                             " with Firmware Version " + std::to_string(gusNewFirmwareRev);
    return ShowAlert("Firmware Update Confirmation", text.c_str());
}

}  // namespace

void CUpdaterApp::UpdateFirmware() {
    if (gNewFirmware == kNoFirmware) {
        ShowAlert("Error", "Could not find suitable firmware for the selected card.");
        return;
    }
    // OK leaves the card as it is; Cancel writes it again on purpose.
    if (mFirmwareIsCurrent && ShowAlert("Error", "The firmware on your card is already up to date!")) {
        return;
    }
    FirmwareImageError error;
    const auto image = LoadFirmwareImage(gszResourcePaths[gNewFirmware], error);
    if (!image) {
        ShowAlert(error.title, error.message);
        return;
    }
    if (mSetup.mayBeWritten &&
        !mSetup.mayBeWritten(gszResourcePaths[gNewFirmware], {image->bytes.get(), image->size})) {
        ShowAlert("Error", "Could not find suitable firmware for the selected card.");
        return;
    }
    const bool isToWrite = confirmUpdate() && !IsQuitting();
    if (isToWrite) {
        try {
            WriteFirmware(image->bytes.get(), image->size);
        } catch (...) {
            // The program can be quit again, or another write tried.
            ChangeWindowState(kWindowIdle);
            UpdateWindowState();
            throw;
        }
    }
    UpdateWindowState();
    if (isToWrite) {
        OfferNextStep();
    }
}

void CUpdaterApp::WarnOfIncompleteCards() {
    if (mIncompleteCardItems.empty()) {
        return;
    }
    auto* const popup = ThrowIfNil(dynamic_cast<LPopupButton*>(mMainWindow->FindPaneByID(kCardPopupPane)));
    std::string cards;
    for (const int32_t item : mIncompleteCardItems) {
        cards += (cards.empty() ? "" : ", ") + popup->GetItemText(item);
    }
    // The names come last, because a text that is too long is cut off.
    const std::string text =
        "An update failed. Do not switch the computer off until you have started VUpdater again and "
        "updated: " +
        cards;
    ShowAlert("Firmware is incomplete", text.c_str());
    SetWindowItemText(mMainWindow, kFinishedText2Pane,
                      "Do not shut down yet, because an earlier update failed. Choose Quit in the File menu, "
                      "start VUpdater again and update the card that failed.");
}

void CUpdaterApp::OfferNextStep() {
    // Clicks and keys made while the window was being redrawn were not meant for the buttons that appeared,
    // which ignore them during the run.
    ProcessNextEvent();
    // A user who is reading the help must see how the write ended.
    ClosePages();
    mMainWindow->CallForAttention();
    if (mWindowState == kWindowFinished && !mIncompleteCardItems.empty()) {
        return;  // no key may shut the computer down at once
    }
    const PaneIDT next = mWindowState == kWindowFinished ? kPowerDownButtonPane : kUpdateButtonPane;
    ThrowIfNil(mMainWindow->FindPaneByID(next))->TakeKeyboard();
}

void CUpdaterApp::RememberWhetherWritten(bool isWritten) {
    if (isWritten) {
        mIncompleteCardItems.erase(mCurrentCardItem);
    } else {
        mIncompleteCardItems.insert(mCurrentCardItem);
    }
    auto incompleteCards = static_cast<int32_t>(mIncompleteCardItems.size());
    KeepException([&] { BroadcastMessage(kIncompleteCardsMessage, &incompleteCards); });
}

void CUpdaterApp::WriteFirmware(uint8_t* image, uint32_t bytes) {
    gProgressMax = bytes;
    gpProgressBar = dynamic_cast<LProgressBar*>(mMainWindow->FindPaneByID(kProgressBarPane));
    UpdateProgressBar(0);
    // A listener may have to wait for the computer, so the window shows the new state before.
    mWindowState = kWindowUpdating;
    UpdateWindowState();
    ChangeWindowState(kWindowUpdating);
    for (int pass = 0; pass < kPassesBeforeWriting; ++pass) {
        ProcessNextEvent();
    }
    uint16_t error = kWriteBrokenOff;
    {
        const DisplayWatchdog watchdog;
        // Whatever happens from here on, the card needs its power until a write has succeeded.
        RememberWhetherWritten(false);
        // An exception from the write is reported later; what matters first is that the write has failed.
        KeepException([&] { error = ProgramConfigProm(image, bytes); });
    }
    if (error == 0) {
        RememberWhetherWritten(true);
    }
    // Clicks and keys since the last pass were meant for the window as it is now, not for the buttons that
    // are about to appear.
    ProcessNextEvent();
    if (error != 0) {
        // The alert before this one has named the error, unless an exception ended the write.
        ShowAlert(
            "EEPROM Programming Failure",
            "Updating the Firmware on the VornMX/K40/DX8 FAILED!\n"
            "Do NOT turn off the power to your computer before successfully updating the VornMX/K40/DX8 "
            "Firmware!");
        ShowFirmwareState();
        ChangeWindowState(kWindowIdle);
    } else {
        KeepException([this] { WarnOfIncompleteCards(); });
        ChangeWindowState(kWindowFinished);
    }
}
