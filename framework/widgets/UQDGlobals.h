#pragma once

// The toolbox that every program with a window prepares first: here, the QApplication.

namespace UQDGlobals {

// Creates the QApplication that everything on screen needs. Further calls change nothing. It lives until the
// process ends, so that one process can run several application objects one after the other.
void InitializeToolbox();

}  // namespace UQDGlobals
