#include "app/Progress.h"

#include "app/CUpdaterApp.h"
#include "framework/widgets/LProgressBar.h"

uint32_t gProgressMax = 0;
LProgressBar* gpProgressBar = nullptr;

void UpdateProgressBar(uint32_t bytes) {
    // The bar runs from 0 to this; the product wraps above some four million bytes, four times a full image.
    constexpr uint32_t kBarMaximum = 1000;
    if (gpProgressBar != nullptr && gProgressMax != 0) {
        gpProgressBar->SetValue(static_cast<int32_t>(bytes * kBarMaximum / gProgressMax));
    }
}

void AllowNextEvent() {
    gpTheApp->ProcessNextEvent();
}
