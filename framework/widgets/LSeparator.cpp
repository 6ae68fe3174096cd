#include "framework/widgets/LSeparator.h"

#include <QEvent>

#include "framework/widgets/SecondaryColour.h"

namespace {

constexpr float kStrength = 0.2F;

}  // namespace

LSeparator::LSeparator() : LPane(this) {
    setFrameShape(QFrame::HLine);
    setFrameShadow(QFrame::Plain);
    TakeSecondaryColour(*this, kStrength);
}

void LSeparator::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) {
        TakeSecondaryColour(*this, kStrength);
    }
}
