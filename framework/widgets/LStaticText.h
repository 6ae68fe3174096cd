#pragma once

// A text that the program may change. It is shown character for character, without markup. The layout's
// property "leastCharacters" keeps room for that many digits, so that the window does not change its size
// with the text. A text reached with the Tab key is selected, ready to be copied.

#include <QLabel>

#include "framework/widgets/LPane.h"

class LStaticText : public QLabel, public LPane {
  public:
    static constexpr const char* kClassName = "LStaticText";

    LStaticText();

    void FinishCreate() override;

    // Shows `length` bytes of UTF-8. A null pointer or a length below 1 empties the pane.
    void SetText(const char* text, int32_t length);

    // Turns bold on or off.
    void Emphasise(bool isEmphasised);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    QSize AtLeast(QSize hint) const;
};
