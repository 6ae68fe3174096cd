#pragma once

#include <QPushButton>

#include "framework/widgets/LControl.h"

// A button; broadcasts when it is pressed. Its value is always 0.
class LPushButton : public QPushButton, public LControl {
  public:
    static constexpr const char* kClassName = "LPushButton";

    LPushButton();

    int32_t GetValue() const override { return 0; }
    void SetValue(int32_t /*value*/) override {}

  protected:
    void keyPressEvent(QKeyEvent* event) override;
};
