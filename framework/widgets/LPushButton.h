#pragma once

#include <QPushButton>

#include "framework/widgets/LControl.h"

// A button; broadcasts when it is pressed. Its value is always 0. Its mnemonic and assistive technology press
// it at once, where Qt would wait a tenth of a second, during which the window can change. The default look
// goes to the button that has the focus, if one has, so that the one which Return presses looks like it.
class LPushButton : public QPushButton, public LControl {
  public:
    static constexpr const char* kClassName = "LPushButton";

    LPushButton();

    int32_t GetValue() const override { return 0; }
    void SetValue(int32_t /*value*/) override {}

    QSize sizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void initStyleOption(QStyleOptionButton* option) const override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};
