#pragma once

#include <QLabel>

#include "framework/widgets/LPane.h"

// A text that the program may change. It is shown character for character, without markup. The layout's
// property "leastCharacters" keeps room for so many digits, so that the window does not change its size with
// the text. One that the keyboard reaches is selected, so that it can be copied.
class LStaticText : public QLabel, public LPane {
  public:
    static constexpr const char* kClassName = "LStaticText";

    LStaticText();

    void FinishCreate() override;

    // Shows so many bytes of UTF-8. A null pointer or a length below 1 empties the pane.
    void SetText(const char* text, int32_t length);

    // Shows the text in bold, or as it was again.
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
