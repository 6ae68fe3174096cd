#include "framework/widgets/RoomOnScreen.h"

#include <QScreen>
#include <QWidget>

QSize RoomOnScreen(const QWidget& widget) {
    // A window's frame is not known until it is shown; this is more than any usual one.
    constexpr QSize kFrame(12, 44);
    return widget.screen()->availableSize() - kFrame;
}
