#pragma once

#include <QFrame>

#include "framework/widgets/LPane.h"

// A thin horizontal line between two parts of a window.
class LSeparator : public QFrame, public LPane {
  public:
    static constexpr const char* kClassName = "LSeparator";

    LSeparator();

  protected:
    void changeEvent(QEvent* event) override;
};
