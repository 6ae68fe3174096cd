#include "images/play/ImagePlay.h"

#include <utility>

#include "images/AccessCount.h"
#include "simulator/jtag/JtagChain.h"
#include "xsvf/JtagPort.h"
#include "xsvf/Player.h"

uint8_t* gpCurrentBufferBase = nullptr;
uint32_t gulCurrentOffset = 0;
uint32_t gulCurrentBufferLength = 0;

namespace {

// images/ counts a wait's accesses without knowing the simulated card that times them.
static_assert(images::kAccessesPerMicrosecond == simulator::Clock::kAccessesPerMicrosecond);

// A chain without a card. Its time passes as on a card, by register accesses.
struct BareChain {
    explicit BareChain(simulator::PromCells before)
        : chain(clock, none, std::move(before),
                [this](simulator::Misuse, const std::string& detail) { misuse = misuse.value_or(detail); }) {
        chain.prom().cells().setWriteThrough([this](std::size_t, std::span<const uint8_t> changed) {
            hasWritten = hasWritten || changed.size() >= simulator::kPageBytes;
        });
    }

    simulator::Clock clock;
    simulator::Faults none;
    std::optional<std::string> misuse;
    bool hasWritten = false;
    simulator::JtagChain chain;
    bool tms = false;
    bool tdi = false;

    void pass(uint64_t accesses) {
        clock.advance(accesses);
        chain.prom().timePassed();
    }
};

BareChain* gpPlayedOn = nullptr;

// Thrown through the player, which cannot be stopped in another way.
struct ImageIsOver {};

}  // namespace

void openPort(uint8_t* image, uint32_t length, uint32_t* /*outputRegister*/, uint32_t* /*inputRegister*/) {
    gpCurrentBufferBase = image;
    gulCurrentOffset = 0;
    gulCurrentBufferLength = length;
    gpPlayedOn->pass(1);
}

void idlePort() {
    gpPlayedOn->pass(1);
}

void setPort(int16_t port, int16_t value) {
    if (port == kPortTMS) {
        gpPlayedOn->tms = value != 0;
    } else if (port == kPortTDI) {
        gpPlayedOn->tdi = value != 0;
    } else if (port == kPortTCK) {
        gpPlayedOn->pass(1);
        gpPlayedOn->chain.drive(value != 0, gpPlayedOn->tms, gpPlayedOn->tdi);
        gpPlayedOn->pass(images::kSettlingLoads);
    }
}

void pulseClock() {
    setPort(kPortTCK, 0);
    setPort(kPortTCK, 1);
    setPort(kPortTCK, 0);
}

uint8_t readTDOBit() {
    gpPlayedOn->pass(1);
    return gpPlayedOn->chain.tdo() ? 1 : 0;
}

void waitTime(int32_t microseconds) {
    if (microseconds > 0) {
        gpPlayedOn->pass(static_cast<uint64_t>(microseconds) * images::kAccessesPerMicrosecond);
    }
}

void readByte(uint8_t* out) {
    if (gulCurrentOffset >= gulCurrentBufferLength) {
        throw ImageIsOver();
    }
    *out = gpCurrentBufferBase[gulCurrentOffset];
    ++gulCurrentOffset;
}

namespace images {

struct ImagePlay::Run {
    explicit Run(simulator::PromCells before) : bare(std::move(before)) {}

    BareChain bare;
    tagSXsvfInfo info;
};

ImagePlay::ImagePlay(std::span<const uint8_t> image, simulator::PromCells before)
    : run_(std::make_unique<Run>(std::move(before))) {
    gpPlayedOn = &run_->bare;
    // The port does not write into the image.
    openPort(const_cast<uint8_t*>(image.data()), static_cast<uint32_t>(image.size()), nullptr, nullptr);
    setPort(kPortTMS, 1);
    xsvfInitialize(&run_->info);
}

ImagePlay::~ImagePlay() {
    gpPlayedOn = nullptr;
}

std::optional<std::string> ImagePlay::playCommand() {
    try {
        switch (xsvfRun(&run_->info)) {
            case kXsvfNoError:
                return std::nullopt;
            case kXsvfTdoMismatch:
            case kXsvfMaxRetries:
                return "The comparison fails on a simulated card.";
            case kXsvfIllegalCommand:
                return "The player does not have this command.";
            case kXsvfIllegalState:
                return "The player cannot go to that state from here.";
            default:
                return "The player cannot hold values of that size.";
        }
    } catch (const ImageIsOver&) {
        return "The image ends before it is complete.";
    }
}

bool ImagePlay::isComplete() const {
    return run_->info.ucIsComplete != 0;
}

std::optional<std::string> ImagePlay::misuse() const {
    return run_->bare.misuse;
}

bool ImagePlay::isBusy() const {
    return run_->bare.chain.prom().state().operation != simulator::Prom::Operation::none;
}

bool ImagePlay::isInProgrammingMode() const {
    return run_->bare.chain.prom().state().programmingMode;
}

bool ImagePlay::hasWritten() const {
    return run_->bare.hasWritten;
}

const simulator::PromCells& ImagePlay::content() const {
    return run_->bare.chain.prom().cells();
}

}  // namespace images
