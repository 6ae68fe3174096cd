// CUpdaterApp's main window: the card popup, the controls' messages, and the look of each window state.

#include <Carbon/MacTypes.h>

#include <QScopedValueRollback>

#include "app/ApplicationHooks.h"
#include "app/CUpdaterApp.h"
#include "app/ResourceIDs.h"
#include "card/CardAccess.h"
#include "framework/core/LException.h"
#include "framework/widgets/LPopupButton.h"
#include "framework/widgets/LWindow.h"

namespace {

// The state in which a pane is shown.
struct StatePane {
    PaneIDT pane;
    WindowState shownIn;
};

constexpr StatePane kStatePanes[] = {
    {kProgressText0Pane, kWindowUpdating},   {kProgressText1Pane, kWindowUpdating},
    {kProgressBarPane, kWindowUpdating},     {kFinishedText0Pane, kWindowFinished},
    {kFinishedText1Pane, kWindowFinished},   {kFinishedText2Pane, kWindowFinished},
    {kPowerDownButtonPane, kWindowFinished}, {kIdleText0Pane, kWindowIdle},
    {kIdleText1Pane, kWindowIdle},           {kIdleText2Pane, kWindowIdle},
    {kCloseButtonPane, kWindowIdle},         {kUpdateButtonPane, kWindowIdle},
};

}  // namespace

void CUpdaterApp::PopulateCardsPopup(LWindow* window) {
    auto* const popup = ThrowIfNil(dynamic_cast<LPopupButton*>(window->FindPaneByID(kCardPopupPane)));
    for (int32_t index = 0; index < mCardCount; ++index) {
        const uint32_t connection = OpenCard(index, nullptr, nullptr, nullptr, nullptr);
        if (connection == 0) {
            continue;
        }
        char name[kCardTextBytes];
        char location[kCardTextBytes];
        if (GetCardInformation(connection, name, location) != 0) {
            Str255 item;
            CopyCStringToPascal((std::string(name) + " in " + location).c_str(), item);
            popup->AppendMenu(item, true);
        }
        // The index, not the connection, so this closes nothing: the connections opened here stay open until
        // the process ends.
        CloseCard(static_cast<uint32_t>(index));
    }
}

bool CUpdaterApp::Accepts(MessageT message) const {
    // The window offers nothing else, but a card is at stake, so this does not rely on the window alone.
    switch (mWindowState) {
        case kWindowUpdating:
            return false;
        case kWindowFinished:
            return !mIsBusy && message == kPowerDownButtonPane;
        default:
            return !mIsBusy;
    }
}

void CUpdaterApp::ListenToMessage(MessageT message, void* /*parameter*/) {
    if (!Accepts(message)) {
        return;
    }
    const QScopedValueRollback busy(mIsBusy, true);
    switch (message) {
        case kCardPopupPane:
            UpdateCardInfo();
            break;
        case kCloseButtonPane:
            DoQuit(kSaveOptionAsk);
            break;
        case kPowerDownButtonPane:
            mPowerDownOnExit = true;
            DoQuit(kSaveOptionAsk);
            break;
        case kUpdateButtonPane:
            UpdateFirmware();
            break;
        default:
            break;
    }
}

void CUpdaterApp::ShowWhetherToQuit() {
    LPane* const pane = mMainWindow->FindPaneByID(kNoQuittingPane);
    if (pane == nullptr) {
        return;
    }
    if (mWindowState == kWindowUpdating) {
        EmphasiseWindowItemText(mMainWindow, kNoQuittingPane, false);
        pane->Show();
    } else {
        pane->Hide();
    }
}

void CUpdaterApp::ChangeWindowState(WindowState state) {
    mWindowState = state;
    KeepException([this] { BroadcastMessage(kWindowStateMessage, &mWindowState); });
}

void CUpdaterApp::UpdateWindowState() {
    if (mWindowState >= kWindowIdle && mWindowState <= kWindowFinished) {
        for (const auto& [paneID, shownIn] : kStatePanes) {
            LPane* const pane = ThrowIfNil(mMainWindow->FindPaneByID(paneID));
            if (mWindowState == shownIn) {
                pane->Show();
            } else {
                pane->Hide();
            }
        }
        LPane* const popup = ThrowIfNil(mMainWindow->FindPaneByID(kCardPopupPane));
        if (mWindowState == kWindowIdle) {
            popup->Enable();
        } else {
            popup->Disable();
        }
        ShowWhetherToQuit();
        for (const PaneIDT paneID : {kFirmwareStatePane, kWriteTimePane}) {
            if (LPane* const pane = mMainWindow->FindPaneByID(paneID)) {
                mWindowState == kWindowIdle ? pane->Show() : pane->Hide();
            }
        }
    }
    // Callers go straight on to long work, so the window cannot wait for the event loop.
    mMainWindow->Refresh();
    mMainWindow->UpdatePort();
}
