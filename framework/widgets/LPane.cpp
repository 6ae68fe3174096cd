#include "framework/widgets/LPane.h"

#include <QWidget>

#include "framework/widgets/DialogLoop.h"
#include "framework/widgets/LApplication.h"

PaneIDT LPane::GetPaneID() const {
    return CodeFromName(mWidget->objectName().toStdString());
}

void LPane::Show() {
    mWidget->show();
}

void LPane::Hide() {
    // Qt moves the keyboard away from a hidden widget only in the active window. In any other, such as one
    // that was just behind a dialog, keys would still reach the hidden widget.
    mWidget->clearFocus();
    mWidget->hide();
}

void LPane::Enable() {
    mWidget->setEnabled(true);
}

void LPane::Disable() {
    mWidget->clearFocus();
    mWidget->setEnabled(false);
}

bool LPane::IsUsable() const {
    const LApplication* application = LApplication::Current();
    const bool isQuitting = application != nullptr && application->IsQuitting();
    return mWidget->isVisible() && mWidget->isEnabled() && !isQuitting && !IsBehindDialog(*mWidget);
}

void LPane::TakeKeyboard() {
    mWidget->setFocus();
}

void LPane::Refresh() {
    mWidget->update();
}

void LPane::FinishCreate() {
    QSizePolicy policy = mWidget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    mWidget->setSizePolicy(policy);
}

LPane* FindPaneByID(const QWidget& window, PaneIDT paneID) {
    if (paneID == 0) {
        return nullptr;
    }
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        auto* pane = dynamic_cast<LPane*>(widget);
        if (pane != nullptr && pane->GetPaneID() == paneID) {
            return pane;
        }
    }
    return nullptr;
}
