#pragma once

// What the hardware layer asks of the application it runs in. app/ defines these; a program without a window,
// or a test, defines its own.

#include <cstdint>

// Lets the event loop run one pass in the middle of long work. It must not start a second run on a card.
void AllowNextEvent();

// Shows how many bytes of the firmware image have been consumed so far.
void UpdateProgressBar(uint32_t bytes);

// Shows an alert with a title and a message (NUL-terminated UTF-8), and returns true if it was answered with
// OK.
bool ShowAlert(const char* title, const char* message);

// Identity word of the open card, or a blank one (catalogue::isBlankIdentity).
extern uint32_t gSerialNumber;
