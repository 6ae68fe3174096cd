#include "tests/xsvf/FakePort.h"

#include <sstream>

#include "xsvf/JtagPort.h"
#include "xsvf/Player.h"

uint8_t* gpCurrentBufferBase = nullptr;
uint32_t gulCurrentOffset = 0;

static FakePort* port = nullptr;
static bool signals[3] = {};

FakePort::FakePort() {
    port = this;
    signals[kPortTDI] = false;
}

std::vector<uint8_t> bytesOf(const std::string& hexadecimal) {
    std::istringstream text(hexadecimal);
    std::vector<uint8_t> bytes;
    for (std::string byte; text >> byte;) {
        bytes.push_back(static_cast<uint8_t>(std::stoul(byte, nullptr, 16)));
    }
    return bytes;
}

tagSXsvfInfo played(std::vector<uint8_t> image) {
    tagSXsvfInfo info;
    DoXsvf(&info, image.data(), 0, nullptr, nullptr);
    return info;
}

void openPort(uint8_t* image, uint32_t, uint32_t*, uint32_t*) {
    gpCurrentBufferBase = image;
    gulCurrentOffset = 0;
}
void idlePort() {}
void setPort(int16_t number, int16_t value) {
    signals[number] = value != 0;
}
void pulseClock() {
    port->log += (signals[kPortTDI] ? "oi" : "01")[signals[kPortTMS] ? 1 : 0];
}
uint8_t readTDOBit() {
    port->log += 's';
    port->tdo.push_back(0);
    const uint8_t bit = port->tdo.front();
    port->tdo.pop_front();
    return bit;
}
void waitTime(int32_t microseconds) {
    port->log += 'w' + std::to_string(microseconds);
}
void readByte(uint8_t* out) {
    *out = gpCurrentBufferBase[gulCurrentOffset++];
}
