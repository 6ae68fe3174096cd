#include "tests/images/prom/AnsweringPort.h"

#include "xsvf/JtagPort.h"

uint8_t* gpCurrentBufferBase = nullptr;
uint32_t gulCurrentOffset = 0;
uint32_t gulCurrentBufferLength = 0;

static AnsweringPort* port = nullptr;

AnsweringPort::AnsweringPort() {
    port = this;
}

void AnsweringPort::open(std::vector<uint8_t>& image, uint32_t offset, const tagSXsvfInfo& record,
                         uint64_t clocks) {
    gpCurrentBufferBase = image.data();
    gulCurrentOffset = offset;
    gulCurrentBufferLength = static_cast<uint32_t>(image.size());
    info = &record;
    clocksLeft = clocks;
    samples = 0;
}

void openPort(uint8_t*, uint32_t, uint32_t*, uint32_t*) {
    ++port->accesses.stores;
}
void idlePort() {
    ++port->accesses.stores;
}
void setPort(int16_t number, int16_t) {
    if (number == kPortTCK) {
        ++port->accesses.stores;
        waitTime(5);
    }
}
void pulseClock() {
    if (port->clocksLeft-- == 0) {
        throw PortIsClosed("too many clocks");
    }
    setPort(kPortTCK, 0);
    setPort(kPortTCK, 1);
    setPort(kPortTCK, 0);
}
uint8_t readTDOBit() {
    ++port->accesses.loads;
    const var_len_byte& expected = port->info->lvExpected;
    const int32_t bit = port->samples++ % port->info->lDrBits;
    const int32_t index = expected.sByteCount - 1 - bit / 8;
    return index >= 0 ? static_cast<uint8_t>(expected.aucValue[index] >> (bit % 8) & 1) : uint8_t{0};
}
void waitTime(int32_t microseconds) {
    if (microseconds > 0) {
        port->accesses.loads += uint64_t{3} * static_cast<uint32_t>(microseconds);
    }
}
void readByte(uint8_t* out) {
    if (gulCurrentOffset >= gulCurrentBufferLength) {
        throw PortIsClosed("the image is over");
    }
    *out = gpCurrentBufferBase[gulCurrentOffset++];
    port->samples = 0;
}
