#include "framework/widgets/LStaticText.h"

#include <QFocusEvent>
#include <QMouseEvent>
#include <QVariant>

#include "framework/widgets/TextLook.h"

namespace {

bool IsByTab(const QFocusEvent& event) {
    return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason;
}

}  // namespace

LStaticText::LStaticText() : LPane(this) {
    setTextFormat(Qt::PlainText);
}

void LStaticText::FinishCreate() {
    LPane::FinishCreate();
    AlignWithLayout(*this);
}

void LStaticText::SetText(const char* text, int32_t length) {
    setText(text == nullptr || length < 1 ? QString() : QString::fromUtf8(text, length));
}

void LStaticText::Emphasise(bool isEmphasised) {
    QFont changed = font();
    changed.setBold(isEmphasised);
    setFont(changed);
}

void LStaticText::mousePressEvent(QMouseEvent* event) {
    // Selected text could be dragged, and Qt drags in a separate event loop: long work that handles this
    // event would wait for as long as the user holds the button.
    if (event->button() == Qt::LeftButton) {
        setSelection(0, 0);
    }
    QLabel::mousePressEvent(event);
}

QSize LStaticText::sizeHint() const {
    return AtLeast(QLabel::sizeHint());
}

QSize LStaticText::minimumSizeHint() const {
    return AtLeast(QLabel::minimumSizeHint());
}

void LStaticText::focusInEvent(QFocusEvent* event) {
    if (event->reason() == Qt::ActiveWindowFocusReason) {
        return;  // not asked for, so no insertion mark appears
    }
    QLabel::focusInEvent(event);
    if (IsByTab(*event)) {
        setSelection(0, static_cast<int>(text().size()));
    }
}

void LStaticText::focusOutEvent(QFocusEvent* event) {
    QLabel::focusOutEvent(event);
    if (IsByTab(*event)) {
        setSelection(0, 0);
    }
}

QSize LStaticText::AtLeast(QSize hint) const {
    const int width = property("leastCharacters").toInt() * fontMetrics().horizontalAdvance('0');
    return hint.expandedTo(QSize(width, 0));
}
