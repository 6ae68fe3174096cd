#include "images/AccessCount.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "images/CommandReader.h"
#include "images/TapStates.h"

namespace images {
namespace {

// A whole image would take a megabyte fresh from the system, at every start of the updater.
constexpr std::size_t kPieceBytes = 0x10000;

bool mayGoOn(ImageEnd end) {
    return end == ImageEnd::missing || end == ImageEnd::cutOff;
}

}  // namespace

AccessCounter::AccessCounter() {
    constexpr uint64_t kIdleWords = 2;
    total_.stores = kIdleWords;
    go(kTapTestLogicReset);
}

void AccessCounter::clock(uint64_t cycles) {
    total_.stores += cycles * kLevelsPerClock;
    total_.loads += cycles * kLevelsPerClock * kSettlingLoads;
}

void AccessCounter::go(uint8_t state) {
    clock(tapClocks(tapState_, state).value_or(0));
    tapState_ = state;
}

void AccessCounter::wait(uint32_t microseconds) {
    if (microseconds != 0) {
        go(kTapRunTestIdle);
        total_.loads += microseconds * kAccessesPerMicrosecond;
    }
}

void AccessCounter::scan(uint8_t shiftState, uint32_t bits, uint8_t endState, uint32_t samples) {
    if (bits == 0) {
        return;
    }
    go(shiftState);
    // The clock that leaves the Shift state also shifts the last bit.
    clock(endState == shiftState ? bits : bits - 1);
    go(endState);
    total_.loads += samples;
}

void AccessCounter::scanCompared() {
    scan(kTapShiftDR, dataBits_, dataEnd_, dataBits_);
    wait(waitMicroseconds_);
}

void AccessCounter::scanData(const Command& command) {
    switch (command.opcode()) {
        case XsvfOpcode::XSDR:
        case XsvfOpcode::XSDRTDO:
            scanCompared();
            break;
        case XsvfOpcode::XSDRINC:
            for (uint32_t scans = 0; scans <= command.number; ++scans) {
                scanCompared();
            }
            break;
        case XsvfOpcode::XSDRB:
        case XsvfOpcode::XSDRC:
            scan(kTapShiftDR, dataBits_, kTapShiftDR, 0);
            break;
        case XsvfOpcode::XSDRE:
            scan(kTapShiftDR, dataBits_, dataEnd_, 0);
            break;
        case XsvfOpcode::XSDRTDOB:
        case XsvfOpcode::XSDRTDOC:
            scan(kTapShiftDR, dataBits_, kTapShiftDR, dataBits_);
            break;
        case XsvfOpcode::XSDRTDOE:
            scan(kTapShiftDR, dataBits_, dataEnd_, dataBits_);
            break;
        default:
            break;
    }
}

void AccessCounter::take(const Command& command) {
    switch (command.opcode()) {
        case XsvfOpcode::XSIR:
            scan(kTapShiftIR, command.number, instructionEnd_, 0);
            wait(waitMicroseconds_);
            break;
        case XsvfOpcode::XSTATE:
            go(static_cast<uint8_t>(command.number));
            break;
        case XsvfOpcode::XENDIR:
            instructionEnd_ = command.number == kXsvfEndPause ? kTapPauseIR : kTapRunTestIdle;
            break;
        case XsvfOpcode::XENDDR:
            dataEnd_ = command.number == kXsvfEndPause ? kTapPauseDR : kTapRunTestIdle;
            break;
        case XsvfOpcode::XRUNTEST:
            waitMicroseconds_ = command.number;
            break;
        case XsvfOpcode::XSDRSIZE:
            dataBits_ = command.number;
            break;
        default:
            scanData(command);
    }
}

std::optional<Accesses> accessesOf(std::istream& image) {
    std::vector<uint8_t> piece(kPieceBytes);
    CommandReader reader{std::span<const uint8_t>()};
    AccessCounter counter;
    while (image && mayGoOn(reader.end())) {
        const std::size_t rest = reader.rest().size();
        std::ranges::copy(reader.rest(), piece.begin());
        if (rest == piece.size()) {
            piece.resize(2 * rest);  // all of it is one command
        }
        image.read(reinterpret_cast<char*>(piece.data() + rest),
                   static_cast<std::streamsize>(piece.size() - rest));
        reader.continueIn(std::span(piece).first(rest + static_cast<std::size_t>(image.gcount())));
        while (const auto command = reader.next()) {
            counter.take(*command);
        }
    }
    return reader.end() == ImageEnd::complete ? std::optional(counter.total()) : std::nullopt;
}

}  // namespace images
