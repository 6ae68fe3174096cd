#include "framework/widgets/RoomOnScreen.h"

#include <QLabel>
#include <QScreen>
#include <algorithm>

QSize RoomOnScreen(const QWidget& widget) {
    // A window's frame is not known until it is shown; this is more than any usual one.
    constexpr QSize kFrame(12, 44);
    return widget.screen()->availableSize() - kFrame;
}

int ComfortableTextWidth(const QLabel& label) {
    constexpr int kCharacters = 60;
    const QFontMetrics metrics = label.fontMetrics();
    return std::min({metrics.size(0, label.text()).width(), kCharacters * metrics.averageCharWidth(),
                     RoomOnScreen(label).width() * 3 / 4});
}
