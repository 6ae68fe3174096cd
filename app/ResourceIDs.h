#pragma once

// The updater's layouts, by the numbers in their file names. Those that every program has, the menu bar and
// the About box, the framework knows itself: menubar-128 and dialog-128.

#include "framework/core/FourCharCode.h"

constexpr int32_t kMainWindowLayout = 128;

constexpr int32_t kNoCardAlert = 129;
// The driver could not be installed, or the chosen card could not be opened.
constexpr int32_t kCardUnreachableAlert = 130;

constexpr int32_t kIdentityDialog = 129;
constexpr PaneIDT kSerialNumberField = 1101;
