#include "framework/widgets/LEditField.h"

LEditField::LEditField() : LPane(this) {}

void LEditField::GetText(Str255 outText) const {
    PascalFromText(text().toStdString(), outText);
}

void LEditField::SetText(ConstStringPtr text) {
    setText(QString::fromStdString(TextOfPascal(text)));
}
