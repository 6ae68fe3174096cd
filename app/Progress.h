#pragma once

// The progress bar of a firmware write. UpdateProgressBar and AllowNextEvent are declared where the hardware
// layer asks for them.

#include <cstdint>

#include "hw/ApplicationHooks.h"

class LProgressBar;

// Bytes of the image being played, and the bar that shows them, or null.
extern uint32_t gProgressMax;
extern LProgressBar* gpProgressBar;
