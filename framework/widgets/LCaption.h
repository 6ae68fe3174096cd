#pragma once

#include <QLabel>

#include "framework/widgets/LPane.h"

// The name of another pane (its buddy), in a colour that steps back behind the values and follows the
// palette. Its tool tip, which the layout gives as plain text, describes the buddy too.
class LCaption : public QLabel, public LPane {
  public:
    static constexpr const char* kClassName = "LCaption";

    LCaption();

    void FinishCreate() override;

  protected:
    void changeEvent(QEvent* event) override;
};
