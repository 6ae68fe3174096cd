#pragma once

// Moving the chain's TAP controllers from state to state with TMS.

#include <cstdint>

// One TCK cycle with TMS at the given level. The label and `traced` are for a trace.
void xsvfTmsTransition(int16_t tms, const char* label, int32_t traced);

// Walks from the state code *state to the target and stores the target there, even if there is no path.
// Returns 0; or 5, having clocked nothing, for a Pause state that is neither the current state nor reached
// from the Shift state of the same register.
int32_t xsvfGotoTapState(uint8_t* state, uint8_t target);
