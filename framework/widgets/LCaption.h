#pragma once

// The name of another pane (its buddy), in a paler colour than the values. Its tool tip, which the
// layout gives as plain text, also describes the buddy.

#include <QLabel>

#include "framework/widgets/LPane.h"

class LCaption : public QLabel, public LPane {
  public:
    static constexpr const char* kClassName = "LCaption";

    LCaption();

    void FinishCreate() override;
};
