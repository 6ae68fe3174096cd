#pragma once

// What is known of the open card. One card is open at a time; reading another replaces all of this. The
// card's identity word, gSerialNumber, belongs to the same set and is declared where the hardware layer asks
// for it.

#include <cstdint>

#include "hw/ApplicationHooks.h"

// Model code.
extern uint16_t gusDeviceID;

// Circuit board revision; 0 has no letter, 1 is A.
extern uint16_t gusPCBRev;
