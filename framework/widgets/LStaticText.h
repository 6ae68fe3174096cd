#pragma once

#include <QLabel>

#include "framework/widgets/LPane.h"

// A text that the program may change. It is shown character for character, without markup.
class LStaticText : public QLabel, public LPane {
  public:
    static constexpr const char* kClassName = "LStaticText";

    LStaticText();

    // Shows so many bytes of UTF-8. A null pointer or a length below 1 empties the pane.
    void SetText(const char* text, int32_t length);
};
