#include "app/ApplicationHooks.h"

#include <Carbon/MacTypes.h>

#include <cstring>

#include "app/CUpdaterApp.h"
#include "framework/widgets/LProgressBar.h"
#include "framework/widgets/LStaticText.h"
#include "framework/widgets/LWindow.h"
#include "framework/widgets/StandardAlert.h"

uint32_t gSerialNumber = 0;
uint32_t gProgressMax = 0;
LProgressBar* gpProgressBar = nullptr;

bool ShowAlert(const char* title, const char* message) {
    Str255 pascalTitle;
    Str255 pascalMessage;
    CopyCStringToPascal(title, pascalTitle);
    CopyCStringToPascal(message, pascalMessage);
    AlertStdAlertParamRec parameters = {};
    parameters.movable = 0;
    parameters.helpButton = 0;
    parameters.filterProc = nullptr;
    parameters.defaultText = kAlertDefaultOKText;
    parameters.cancelText = kAlertDefaultCancelText;
    parameters.otherText = nullptr;
    parameters.defaultButton = kAlertStdAlertOKButton;
    parameters.cancelButton = kAlertStdAlertCancelButton;
    parameters.position = kWindowAlertPositionParentWindowScreen;
    int16_t item = 0;
    StandardAlert(kAlertCautionAlert, pascalTitle, pascalMessage, &parameters, &item);
    return item == kAlertStdAlertOKButton;
}

void UpdateProgressBar(uint32_t bytes) {
    // The bar runs from 0 to this. The product wraps above some four million bytes, four times a full image.
    constexpr uint32_t kBarMaximum = 1000;
    if (gpProgressBar != nullptr && gProgressMax != 0) {
        gpProgressBar->SetValue(static_cast<int32_t>(bytes * kBarMaximum / gProgressMax));
    }
}

void AllowNextEvent() {
    gpTheApp->ProcessNextEvent();
}

void SetWindowItemText(LWindow* window, PaneIDT paneID, const char* text) {
    if (auto* const pane = dynamic_cast<LStaticText*>(window->FindPaneByID(paneID))) {
        pane->SetText(text, static_cast<int32_t>(std::strlen(text)));
    }
}

void EmphasiseWindowItemText(LWindow* window, PaneIDT paneID, bool isEmphasised) {
    if (auto* const pane = dynamic_cast<LStaticText*>(window->FindPaneByID(paneID))) {
        pane->Emphasise(isEmphasised);
    }
}
