#include "framework/widgets/LProgressBar.h"

#include <algorithm>

#include "framework/widgets/UDisplay.h"

LProgressBar::LProgressBar() : LControl(this) {}

void LProgressBar::SetValue(int32_t value) {
    // A bar draws itself at once.
    UDisplay::UseInPassing([this, value] { setValue(std::clamp(value, minimum(), maximum())); });
}
