#include "xsvf/VarLenByte.h"

#include "xsvf/JtagPort.h"

void readVal(var_len_byte* value, int16_t byteCount) {
    value->sByteCount = byteCount;
    const uint16_t bytes = static_cast<uint16_t>(byteCount);
    for (uint32_t index = 0; index < bytes; ++index) {
        uint8_t byte = 0;
        readByte(&byte);
        if (index < sizeof value->aucValue) {
            value->aucValue[index] = byte;
        }
    }
}

int32_t EqualLenVal(const var_len_byte* expected, const var_len_byte* actual, const var_len_byte* mask) {
    for (int32_t index = expected->sByteCount - 1; index >= 0; --index) {
        const int32_t compared = mask != nullptr ? mask->aucValue[index] : 0xFF;
        if ((expected->aucValue[index] & compared) != (actual->aucValue[index] & compared)) {
            return 0;
        }
    }
    return 1;
}

void addVal(var_len_byte* result, const var_len_byte* first, const var_len_byte* second) {
    result->sByteCount = first->sByteCount;
    uint32_t carry = 0;
    for (int32_t index = first->sByteCount - 1; index >= 0; --index) {
        const uint32_t sum = first->aucValue[index] + second->aucValue[index] + carry;
        result->aucValue[index] = static_cast<uint8_t>(sum);
        carry = sum >> 8;
    }
}

uint32_t value(const var_len_byte* number) {
    uint32_t result = 0;
    for (int32_t index = 0; index < number->sByteCount; ++index) {
        result = (result << 8) | number->aucValue[index];
    }
    return result;
}

void xsvfPrintLenVal(const var_len_byte*) {}
