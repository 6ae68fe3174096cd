#include "framework/widgets/LPushButton.h"

LPushButton::LPushButton() : LControl(this) {
    // Return presses the button that has the focus, not the window's default button.
    setAutoDefault(true);
    connect(this, &QPushButton::clicked, this, [this] { BroadcastFromQt(); });
}
