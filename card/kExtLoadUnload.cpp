#include "card/kExtLoadUnload.h"

int32_t ExtractAndLoadKext(void** driverReference) {
    *driverReference = nullptr;
    return 0;
}

int32_t UnloadAndDeleteKext(void** /*driverReference*/) {
    return 0;
}
