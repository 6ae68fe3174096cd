#pragma once

// The states of the main window, and the messages with which the application announces them and its writes.

#include <cstdint>

#include "framework/core/FourCharCode.h"

// What the main window shows and which controls it offers.
enum WindowState : int32_t {
    kWindowIdle = 0,
    kWindowUpdating = 1,
    kWindowFinished = 2,
};

// Broadcast by the application each time the state changes, with the new state as an int32_t*. A write to a
// card lies between kWindowUpdating and the next state, however it ends. If it has failed, the alert that
// warns of switching the computer off has been answered by then.
constexpr MessageT kWindowStateMessage = FourCharCode("WSTA");

// Broadcast by the application before a firmware write changes anything, and again when it has succeeded,
// before the state that ends it, with an int32_t*: how many cards an update has begun to change and none has
// completed since.
constexpr MessageT kIncompleteCardsMessage = FourCharCode("INCO");

// Broadcast by the application before and after it writes the identity that the user has typed into a card,
// with an int32_t*: 1, then 0 however the write ends.
constexpr MessageT kIdentityWriteMessage = FourCharCode("IDWR");
