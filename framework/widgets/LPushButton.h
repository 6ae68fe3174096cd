#pragma once

// A button; broadcasts when it is pressed. Its value is always 0. Its mnemonic and assistive technology press
// it at once, where Qt would wait a tenth of a second, during which the window can change. A button that has
// the focus also has the default look, because Return presses it.

#include <QPushButton>

#include "framework/widgets/LControl.h"

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

// The standard button. Every button is drawn in the desktop's standard look, so it differs in name only.
class LStdButton : public LPushButton {
  public:
    static constexpr const char* kClassName = "LStdButton";
};
