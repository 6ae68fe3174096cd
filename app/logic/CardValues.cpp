#include "app/logic/CardValues.h"

uint16_t gusDeviceID = 0;
uint16_t gusPCBRev = 0;
uint32_t gSerialNumber = 0;
