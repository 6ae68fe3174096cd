#pragma once

// The small functions that the whole application uses: alerts, the progress of a write, texts in a window.
// ShowAlert, UpdateProgressBar and AllowNextEvent are declared by the hardware layer, which calls them, too.

#include <cstdint>

#include "framework/core/FourCharCode.h"
#include "hw/ApplicationHooks.h"

class LProgressBar;
class LWindow;

// Bytes of the image being played, and the bar that shows them, or null.
extern uint32_t gProgressMax;
extern LProgressBar* gpProgressBar;

// Sets the text (NUL-terminated UTF-8) of a static text pane. A pane that is missing or of another class is
// left alone.
void SetWindowItemText(LWindow* window, PaneIDT paneID, const char* text);

// Shows the text of such a pane in bold, or no longer.
void EmphasiseWindowItemText(LWindow* window, PaneIDT paneID, bool isEmphasised);
