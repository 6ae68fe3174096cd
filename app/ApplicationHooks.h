#pragma once

// Small functions for the whole application: alerts, the progress of a write, texts in a window. The hardware
// layer declares ShowAlert, UpdateProgressBar and AllowNextEvent, because it calls them, too.

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

// Turns bold on or off for the text of such a pane.
void EmphasiseWindowItemText(LWindow* window, PaneIDT paneID, bool isEmphasised);
