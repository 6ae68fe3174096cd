#include "framework/widgets/LStaticText.h"

#include <QVariant>

LStaticText::LStaticText() : LPane(this) {
    setTextFormat(Qt::PlainText);
}

void LStaticText::SetText(const char* text, int32_t length) {
    setText(text == nullptr || length < 1 ? QString() : QString::fromUtf8(text, length));
}

QSize LStaticText::sizeHint() const {
    return AtLeast(QLabel::sizeHint());
}

QSize LStaticText::minimumSizeHint() const {
    return AtLeast(QLabel::minimumSizeHint());
}

QSize LStaticText::AtLeast(QSize hint) const {
    const int width = property("leastCharacters").toInt() * fontMetrics().horizontalAdvance('0');
    return hint.expandedTo(QSize(width, 0));
}
