#include "card/Registers.h"

#include "platform/Host.h"

uint8_t gbSwap = 0;
uint32_t* gpRegisters = nullptr;

namespace {

uint32_t inCardOrder(uint32_t word) {
    return gbSwap != 0 ? __builtin_bswap32(word) : word;
}

}  // namespace

uint32_t MacReadULONG(uint32_t* reg) {
    return inCardOrder(InstalledHost().loadWord(reg));
}

void MacWriteULONG(uint32_t* reg, uint32_t value) {
    InstalledHost().storeWord(reg, inCardOrder(value));
}
