#include "app/CUpdaterApp.h"

#include "app/ApplicationHooks.h"
#include "app/ResourceIDs.h"
#include "app/logic/CardValues.h"
#include "app/logic/FirmwareFiles.h"
#include "app/logic/PowerDown.h"
#include "card/CardAccess.h"
#include "card/Registers.h"
#include "card/kExtLoadUnload.h"
#include "catalogue/CardIdentity.h"
#include "framework/core/LException.h"
#include "framework/core/UEnvironment.h"
#include "framework/core/URegistrar.h"
#include "framework/widgets/LCaption.h"
#include "framework/widgets/LDialogBox.h"
#include "framework/widgets/LEditField.h"
#include "framework/widgets/LPopupButton.h"
#include "framework/widgets/LProgressBar.h"
#include "framework/widgets/LPushButton.h"
#include "framework/widgets/LStaticText.h"
#include "framework/widgets/LWindow.h"
#include "framework/widgets/UControlRegistry.h"
#include "framework/widgets/UModalDialogs.h"

CUpdaterApp* gpTheApp = nullptr;

namespace {

// Always enabled and handled here, but does nothing: a menu can contain it without effect.
constexpr CommandT kInertCommand = 2;

constexpr int32_t kDriverLoaded = 1;

}  // namespace

CUpdaterApp::CUpdaterApp(const UpdaterSetup& setup) : mSetup(setup) {
    if (mSetup.windowStateListener != nullptr) {
        AddListener(mSetup.windowStateListener);
    }
    if (UEnvironment::HasFeature(UEnvironment::kHasAppearance)) {
        RegisterAppearanceClient();
    }
    RegisterClasses();
    // Forget what an earlier application object found.
    gpRegisters = nullptr;
    gbSwap = 0;
    gusDeviceID = 0;
    gusPCBRev = 0;
    gSerialNumber = catalogue::kNoIdentity;
    gNewFirmware = kNoFirmware;
    gusNewFirmwareRev = 0;
}

CUpdaterApp::~CUpdaterApp() {
    if (mCardConnection != 0) {
        CloseCard(mCardConnection);
        gpRegisters = nullptr;
    }
    if (mDriverLoadResult != 0 && !mPowerDownOnExit) {
        UnloadAndDeleteKext(&mDriverRef);
        mDriverLoadResult = 0;
    }
    if (mPowerDownOnExit) {
        PowerDown();
    }
}

void CUpdaterApp::RegisterClasses() {
    URegistrar::RegisterClass<LDialogBox>();
    URegistrar::RegisterClass<LWindow>();
    URegistrar::RegisterClass<LPopupButton>();
    URegistrar::RegisterClass<LPushButton>();
    URegistrar::RegisterClass<LStaticText>();
    URegistrar::RegisterClass<LProgressBar>();
    URegistrar::RegisterClass<LCaption>();
    URegistrar::RegisterClass<LEditField>();
    URegistrar::RegisterClass<LDialogBox>();  // a second time, which changes nothing
    URegistrar::RegisterClass<LStdButton>();
    UControlRegistry::RegisterAMClasses();
}

bool CUpdaterApp::ObeyCommand(CommandT command, void* parameter) {
    if (command == kInertCommand) {
        return true;
    }
    return LApplication::ObeyCommand(command, parameter);
}

void CUpdaterApp::FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark,
                                    uint16_t& outMark, unsigned char* outName) {
    if (command == kInertCommand) {
        outEnabled = 1;
        return;
    }
    LApplication::FindCommandStatus(command, outEnabled, outUsesMark, outMark, outName);
}

bool CUpdaterApp::AttemptQuitSelf(int32_t /*saveOption*/) {
    return mWindowState != kWindowUpdating;
}

void CUpdaterApp::QuitRefused() {
    LApplication::QuitRefused();
    EmphasiseWindowItemText(mMainWindow, kNoQuittingPane, true);
}

void CUpdaterApp::StartUp() {
    CatalogueFirmwareFiles(mSetup.mayBeOffered);
    mCardCount = static_cast<int32_t>(GetNumberOfCardsInstalled());
    if (mCardCount == 0) {
        mDriverLoadResult = ExtractAndLoadKext(&mDriverRef);
        if (mDriverLoadResult != kDriverLoaded) {
            UModalAlerts::Alert(kCardUnreachableAlert);
            DoQuit(kSaveOptionAsk);
            return;
        }
        mCardCount = static_cast<int32_t>(GetNumberOfCardsInstalled());
        if (mCardCount == 0) {
            UModalAlerts::Alert(kNoCardAlert);
            DoQuit(kSaveOptionAsk);
            return;
        }
    }
    mMainWindow = ThrowIfNil(LWindow::CreateWindow(kMainWindowLayout, this));
    for (const PaneIDT control :
         {kCardPopupPane, kCloseButtonPane, kUpdateButtonPane, kPowerDownButtonPane}) {
        auto* const broadcaster = dynamic_cast<LBroadcaster*>(mMainWindow->FindPaneByID(control));
        ThrowIfNil(broadcaster)->AddListener(this);
    }
    UpdateWindowState();
    mMainWindow->Show();
    PopulateCardsPopup(mMainWindow);
}
