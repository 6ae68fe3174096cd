#include "framework/widgets/HeldKeyFilter.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace {

bool GivesAnswer(int key, const QObject* watched) {
    switch (key) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Escape:
            return true;
        case Qt::Key_Space:
            return qobject_cast<const QLineEdit*>(watched) == nullptr;
        default:
            return false;
    }
}

}  // namespace

bool HeldKeyFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) {
        return false;
    }
    const auto* const key = static_cast<QKeyEvent*>(event);
    if (event->type() == QEvent::KeyRelease) {
        mReleasedKey = key->key();
        mReleasedAt = key->timestamp();
        return false;
    }
    // Window systems that repeat a key by releasing and pressing it at the same instant do not always mark
    // the repetition as one.
    const bool isRepetition = key->isAutoRepeat() || (key->timestamp() != 0 && key->key() == mReleasedKey &&
                                                      key->timestamp() == mReleasedAt);
    return isRepetition && GivesAnswer(key->key(), watched);
}
