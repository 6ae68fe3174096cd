#pragma once

namespace UQDGlobals {

// Makes the QApplication that everything on screen needs. Asking again changes nothing, and it lives until
// the process ends, so that one process can run several application objects one after the other.
void InitializeToolbox();

}  // namespace UQDGlobals
