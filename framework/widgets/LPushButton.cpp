#include "framework/widgets/LPushButton.h"

#include <QKeyEvent>
#include <QShortcutEvent>
#include <QStyleOptionButton>

#include "framework/widgets/AccessibleButton.h"

LPushButton::LPushButton() : LControl(this) {
    DescribeButtonsToAssistiveTechnology();
    connect(this, &QPushButton::clicked, this, [this] { BroadcastFromQt(); });
}

QSize LPushButton::sizeHint() const {
    // Some styles leave hardly any room beside a text that is longer than usual.
    constexpr int kCharactersBesideText = 4;
    const int text = fontMetrics().size(Qt::TextShowMnemonic, this->text()).width();
    const int room = kCharactersBesideText * fontMetrics().averageCharWidth();
    return QPushButton::sizeHint().expandedTo(QSize(text + room, 0));
}

bool LPushButton::event(QEvent* event) {
    if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(event)->isAmbiguous()) {
        return QPushButton::event(event);
    }
    if (IsUsable()) {
        setFocus(Qt::ShortcutFocusReason);
        click();
    }
    return true;
}

void LPushButton::initStyleOption(QStyleOptionButton* option) const {
    QPushButton::initStyleOption(option);
    const auto* focused = qobject_cast<QPushButton*>(window()->focusWidget());
    option->features.setFlag(QStyleOptionButton::DefaultButton,
                             focused != nullptr ? focused == this : isDefault());
}

void LPushButton::focusInEvent(QFocusEvent* event) {
    QPushButton::focusInEvent(event);
    // Another button loses the default look, and gets it back below.
    window()->update();
}

void LPushButton::focusOutEvent(QFocusEvent* event) {
    QPushButton::focusOutEvent(event);
    window()->update();
}

void LPushButton::keyPressEvent(QKeyEvent* event) {
    if (!IsUsable()) {
        event->ignore();
        return;
    }
    // Return presses the button that has the focus, not the window's default button. (Qt's own way to say so,
    // autoDefault, takes the default look away from a button that loses the focus.)
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QPushButton::keyPressEvent(event);
    }
}
