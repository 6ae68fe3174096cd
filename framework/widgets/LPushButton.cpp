#include "framework/widgets/LPushButton.h"

#include <QKeyEvent>

LPushButton::LPushButton() : LControl(this) {
    connect(this, &QPushButton::clicked, this, [this] { BroadcastFromQt(); });
}

void LPushButton::keyPressEvent(QKeyEvent* event) {
    // Return presses the button that has the focus, not the window's default button. (Qt's own way to say so,
    // autoDefault, takes the default look away from a button that loses the focus.)
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QPushButton::keyPressEvent(event);
    }
}
