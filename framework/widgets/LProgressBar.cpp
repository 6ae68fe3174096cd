#include "framework/widgets/LProgressBar.h"

#include <algorithm>

LProgressBar::LProgressBar() : LControl(this) {}

void LProgressBar::SetValue(int32_t value) {
    setValue(std::clamp(value, minimum(), maximum()));
}
