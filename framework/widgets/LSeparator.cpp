#include "framework/widgets/LSeparator.h"

LSeparator::LSeparator() : LPane(this) {
    setFrameShape(QFrame::HLine);
    setFrameShadow(QFrame::Sunken);
}
