#include "framework/widgets/SecondaryColour.h"

#include <QApplication>
#include <QWidget>

void TakeSecondaryColour(QWidget& widget, float strength) {
    const QWidget* parent = widget.parentWidget();
    const QPalette surroundings = parent != nullptr ? parent->palette() : QApplication::palette();
    QColor colour = surroundings.color(QPalette::Active, QPalette::WindowText);
    colour.setAlphaF(strength);
    // Setting the palette comes back here as a change of palette.
    if (widget.palette().color(QPalette::Active, QPalette::WindowText) != colour) {
        QPalette own = widget.palette();
        own.setColor(QPalette::WindowText, colour);
        widget.setPalette(own);
    }
}
