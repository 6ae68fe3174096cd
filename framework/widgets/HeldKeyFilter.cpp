#include "framework/widgets/HeldKeyFilter.h"

#include <QKeyEvent>

bool HeldKeyFilter::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const auto* const key = static_cast<QKeyEvent*>(event);
    return key->isAutoRepeat() && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter);
}
