#pragma once

#include <QProgressBar>

#include "framework/widgets/LControl.h"

// Shows how far something has come. The layout sets the range; values outside it stop at its ends.
class LProgressBar : public QProgressBar, public LControl {
  public:
    static constexpr const char* kClassName = "LProgressBar";

    LProgressBar();

    int32_t GetValue() const override { return value(); }
    void SetValue(int32_t value) override;
};
