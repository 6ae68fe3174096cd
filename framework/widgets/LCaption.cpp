#include "framework/widgets/LCaption.h"

#include <QApplication>
#include <QEvent>

LCaption::LCaption() : LPane(this) {
    setTextFormat(Qt::PlainText);
    TakeColour();
}

void LCaption::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) {
        TakeColour();
    }
}

void LCaption::TakeColour() {
    // Seven tenths of the text's colour: clearly second to the values, and still well above the contrast that
    // people with weak eyes need, on light and dark windows alike.
    constexpr float kStrength = 0.7F;
    const QPalette surroundings =
        parentWidget() != nullptr ? parentWidget()->palette() : QApplication::palette();
    QColor colour = surroundings.color(QPalette::Active, QPalette::WindowText);
    colour.setAlphaF(kStrength);
    if (palette().color(QPalette::Active, QPalette::WindowText) != colour) {
        QPalette own = palette();
        own.setColor(QPalette::WindowText, colour);
        setPalette(own);
    }
}
