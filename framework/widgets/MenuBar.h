#pragma once

// Puts the menu bar that menubar-<layoutID>.ui describes on a window. An action's property "command" is its
// command number: choosing the action sends it up the chain of command from the target, where
// FindCommandStatus is asked for its state each time a menu opens. Without a usable layout the window has no
// menu bar, and standard error says why.

#include <cstdint>

class LWindow;

void AttachMenuBar(LWindow& window, int32_t layoutID);
