#pragma once

#include <QLineEdit>

#include "framework/core/PascalString.h"
#include "framework/widgets/LPane.h"

// One line of text that the user edits.
class LEditField : public QLineEdit, public LPane {
  public:
    static constexpr const char* kClassName = "LEditField";

    LEditField();

    void GetText(Str255 outText) const;
    void SetText(ConstStringPtr text);
};
