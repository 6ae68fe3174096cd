#pragma once

#include "framework/widgets/LPushButton.h"

// The standard button. Every button is drawn in the desktop's standard look, so it differs in name only.
class LStdButton : public LPushButton {
  public:
    static constexpr const char* kClassName = "LStdButton";
};
