#pragma once

// What is known about the open card, besides its identity word, gSerialNumber, which the hardware layer
// declares. One card is open at a time; reading another replaces all of this.

#include <cstdint>

// Model code.
inline uint16_t gusDeviceID = 0;

// Circuit board revision; 0 has no letter, 1 is A.
inline uint16_t gusPCBRev = 0;
