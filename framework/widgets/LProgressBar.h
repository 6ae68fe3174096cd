#pragma once

// A bar that shows how far some work has got. The layout sets the range; values outside it stop at its ends.

#include <QProgressBar>
#include <algorithm>

#include "framework/widgets/LControl.h"
#include "framework/widgets/UDisplay.h"

class LProgressBar : public QProgressBar, public LControl {
  public:
    static constexpr const char* kClassName = "LProgressBar";

    LProgressBar() : LControl(this) {}

    int32_t GetValue() const override { return value(); }

    // A bar draws itself at once, which must not hold up work.
    void SetValue(int32_t value) override {
        UDisplay::UseInPassing([this, value] { setValue(std::clamp(value, minimum(), maximum())); });
    }
};
