#pragma once

// One line of text that the user edits.

#include <QLineEdit>

#include "framework/core/PascalString.h"
#include "framework/widgets/LPane.h"

class LEditField : public QLineEdit, public LPane {
  public:
    static constexpr const char* kClassName = "LEditField";

    LEditField() : LPane(this) {}

    void GetText(Str255 outText) const { PascalFromText(text().toStdString(), outText); }
    void SetText(ConstStringPtr text) { setText(QString::fromStdString(TextOfPascal(text))); }
};
