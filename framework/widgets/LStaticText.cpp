#include "framework/widgets/LStaticText.h"

LStaticText::LStaticText() : LPane(this) {
    setTextFormat(Qt::PlainText);
}

void LStaticText::SetText(const char* text, int32_t length) {
    setText(text == nullptr || length < 1 ? QString() : QString::fromUtf8(text, length));
}
