#include "tools/cardsim/ImageContent.h"

#include <vector>

#include "simulator/Files.h"
#include "simulator/JtagChain.h"
#include "simulator/MachineError.h"
#include "xsvf/JtagPort.h"
#include "xsvf/Player.h"
#include "xsvf/Trace.h"

uint8_t* gpCurrentBufferBase = nullptr;
uint32_t gulCurrentOffset = 0;
uint32_t gulCurrentBufferLength = 0;

namespace {

using simulator::Clock;
using simulator::MachineError;
using simulator::Misuse;
using simulator::PromCells;

// A chain without a card around it. Time passes in waits alone, and all at once.
struct BareChain {
    Clock clock;
    simulator::Faults none;
    simulator::JtagChain chain{clock, none, PromCells(), [](Misuse, const std::string&) {}};
    bool tms = false;
    bool tdi = false;
};

BareChain* gpPlayedOn = nullptr;  // while an image is played

}  // namespace

void openPort(uint8_t* image, uint32_t length, uint32_t* /*outputRegister*/, uint32_t* /*inputRegister*/) {
    gpCurrentBufferBase = image;
    gulCurrentOffset = 0;
    gulCurrentBufferLength = length;
}

void idlePort() {}

void setPort(int16_t port, int16_t value) {
    if (port == kPortTMS)
        gpPlayedOn->tms = value != 0;
    else if (port == kPortTDI)
        gpPlayedOn->tdi = value != 0;
    else
        gpPlayedOn->chain.drive(value != 0, gpPlayedOn->tms, gpPlayedOn->tdi);
}

void pulseClock() {
    setPort(kPortTCK, 0);
    setPort(kPortTCK, 1);
    setPort(kPortTCK, 0);
}

uint8_t readTDOBit() {
    return gpPlayedOn->chain.tdo() ? 1 : 0;
}

void waitTime(int32_t microseconds) {
    if (microseconds <= 0)
        return;
    Clock& clock = gpPlayedOn->clock;
    clock.resume(clock.accesses() + static_cast<uint64_t>(microseconds) * Clock::kAccessesPerMicrosecond);
    gpPlayedOn->chain.prom().timePassed();
}

void readByte(uint8_t* out) {
    if (gulCurrentOffset >= gulCurrentBufferLength)
        throw MachineError("the image ends before it is complete.");
    *out = gpCurrentBufferBase[gulCurrentOffset];
    ++gulCurrentOffset;
}

namespace cardsim {

PromCells contentOfImage(const std::string& file) {
    std::vector<uint8_t> image = simulator::readFile(file);
    BareChain bare;
    gpPlayedOn = &bare;
    xsvf_iDebugLevel = -1;
    tagSXsvfInfo info;
    try {
        DoXsvf(&info, image.data(), static_cast<uint32_t>(image.size()), nullptr, nullptr);
    } catch (const MachineError& error) {
        throw MachineError(file + ": " + error.what());
    }
    if (info.iResult != kXsvfNoError)
        throw MachineError(file + ": the image fails on an erased PROM (" + xsvfErrorText(info.iResult) +
                           ").");
    PromCells content;
    content.setImage(bare.chain.prom().cells().image());
    return content;
}

}  // namespace cardsim
