#pragma once

// A thin horizontal line between two parts of a window.

#include <QFrame>

#include "framework/widgets/LPane.h"
#include "framework/widgets/TextLook.h"

class LSeparator : public QFrame, public LPane {
  public:
    static constexpr const char* kClassName = "LSeparator";

    LSeparator() : LPane(this) {
        constexpr float kStrength = 0.2F;
        setFrameShape(QFrame::HLine);
        setFrameShadow(QFrame::Plain);
        TakeSecondaryColour(*this, kStrength);
    }
};
