#pragma once

#include <QLabel>

#include "framework/widgets/LPane.h"

// The desktop's own icon for an alert. The layout's property "icon" chooses it: "stop", "note" or "caution".
class LIconPane : public QLabel, public LPane {
  public:
    static constexpr const char* kClassName = "LIconPane";

    LIconPane();

    void FinishCreate() override;
};
