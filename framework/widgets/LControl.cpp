#include "framework/widgets/LControl.h"

#include <QVariant>
#include <QWidget>

#include "framework/widgets/LApplication.h"
#include "framework/widgets/UDisplay.h"

void LControl::BroadcastValueMessage() {
    if (mValueMessage != 0) {
        int32_t value = GetValue();
        BroadcastMessage(mValueMessage, &value);
    }
}

void LControl::FinishCreate() {
    LPane::FinishCreate();
    const QVariant message = PaneWidget()->property("valueMessage");
    if (message.isValid()) {
        mValueMessage = CodeFromName(message.toString().toStdString());
    }
}

void LControl::BroadcastFromQt() noexcept {
    if (IsUsable()) {
        KeepException([this] { BroadcastValueMessage(); });
        UDisplay::LeaveBrokenPass();
    }
}
