#include "card/Registers.h"

uint8_t gbSwap = 0;
uint32_t* gpRegisters = nullptr;
