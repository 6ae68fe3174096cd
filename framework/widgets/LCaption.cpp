#include "framework/widgets/LCaption.h"

#include <QEvent>

#include "framework/widgets/SecondaryColour.h"

namespace {

// Clearly second to the values, and still well above the contrast that people with weak eyes need.
constexpr float kStrength = 0.7F;

}  // namespace

LCaption::LCaption() : LPane(this) {
    setTextFormat(Qt::PlainText);
    TakeSecondaryColour(*this, kStrength);
}

void LCaption::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) {
        TakeSecondaryColour(*this, kStrength);
    }
}
