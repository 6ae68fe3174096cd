#pragma once

// Writing the text panes of a window.

#include "framework/core/FourCharCode.h"

class LWindow;

// Sets the text (NUL-terminated UTF-8) of a static text pane. A pane that is missing or of another class is
// left alone.
void SetWindowItemText(LWindow* window, PaneIDT paneID, const char* text);

// Shows the text of such a pane in bold, or no longer.
void EmphasiseWindowItemText(LWindow* window, PaneIDT paneID, bool isEmphasised);
