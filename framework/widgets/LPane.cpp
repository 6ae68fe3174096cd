#include "framework/widgets/LPane.h"

#include <QWidget>

PaneIDT LPane::GetPaneID() const {
    return CodeFromName(mWidget->objectName().toStdString());
}

void LPane::Show() {
    mWidget->show();
}

void LPane::Hide() {
    mWidget->hide();
}

void LPane::Enable() {
    mWidget->setEnabled(true);
}

void LPane::Disable() {
    mWidget->setEnabled(false);
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
