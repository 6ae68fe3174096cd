#pragma once

// The name of another pane (its buddy), in a colour that is weaker than the values'. Its tool tip, which the
// layout gives as plain text, describes the buddy, too.

#include <QLabel>

#include "framework/widgets/LPane.h"

class LCaption : public QLabel, public LPane {
  public:
    static constexpr const char* kClassName = "LCaption";

    LCaption();

    void FinishCreate() override;
};
