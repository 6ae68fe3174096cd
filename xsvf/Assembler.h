#pragma once

// Writes XSVF. Each command has a method of the same name that appends its bytes to a sink.
//
// It works at compile time, for the programs that are built in, and at run time, for whole firmware images. A
// sink is anything with push_back(uint8_t): a std::vector, or FixedBytes.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "xsvf/Format.h"

// A data register value, given as a number or as bytes, most significant first, which must stay alive until
// it has been written. It is written with as many bytes as the current data size needs; missing high bytes
// are 0, surplus ones are dropped.
class XsvfValue {
  public:
    constexpr XsvfValue(uint64_t number) : mNumber(number) {}
    constexpr XsvfValue(std::span<const uint8_t> bytes) : mBytes(bytes) {}
    template <std::size_t kBytes>
    constexpr XsvfValue(const std::array<uint8_t, kBytes>& bytes) : mBytes(bytes) {}

    // Position 0 is the least significant byte.
    constexpr uint8_t byteAt(std::size_t position) const {
        if (!mBytes.empty()) {
            return position < mBytes.size() ? mBytes[mBytes.size() - 1 - position] : uint8_t{0};
        }
        return position < sizeof mNumber ? static_cast<uint8_t>(mNumber >> (8 * position)) : uint8_t{0};
    }

  private:
    uint64_t mNumber = 0;
    std::span<const uint8_t> mBytes;
};

template <typename Sink>
class XsvfAssembler {
  public:
    explicit constexpr XsvfAssembler(Sink& sink) : mSink(sink) {}

    constexpr void XCOMPLETE() { command(XsvfOpcode::XCOMPLETE); }

    constexpr void XTDOMASK(const XsvfValue& mask) { commandWithData(XsvfOpcode::XTDOMASK, mask); }

    constexpr void XSIR(uint8_t bits, uint64_t instruction) {
        command(XsvfOpcode::XSIR);
        mSink.push_back(bits);
        append(instruction, (bits + 7U) / 8);
    }

    constexpr void XSDR(const XsvfValue& tdi) { commandWithData(XsvfOpcode::XSDR, tdi); }

    constexpr void XRUNTEST(uint32_t microseconds) {
        command(XsvfOpcode::XRUNTEST);
        append(microseconds, 4);
    }

    constexpr void XREPEAT(uint8_t retryLimit) {
        command(XsvfOpcode::XREPEAT);
        mSink.push_back(retryLimit);
    }

    constexpr void XSDRSIZE(uint32_t bits) {
        command(XsvfOpcode::XSDRSIZE);
        append(bits, 4);
        mDataBytes = (std::size_t{bits} + 7) / 8;
    }

    constexpr void XSDRTDO(const XsvfValue& tdi, const XsvfValue& expected) {
        commandWithData(XsvfOpcode::XSDRTDO, tdi);
        append(expected, mDataBytes);
    }

    constexpr void XSDRE(const XsvfValue& tdi) { commandWithData(XsvfOpcode::XSDRE, tdi); }

    constexpr void XSTATE(uint8_t stateCode) {
        command(XsvfOpcode::XSTATE);
        mSink.push_back(stateCode);
    }

  private:
    constexpr void command(XsvfOpcode opcode) { mSink.push_back(static_cast<uint8_t>(opcode)); }

    constexpr void commandWithData(XsvfOpcode opcode, const XsvfValue& data) {
        command(opcode);
        append(data, mDataBytes);
    }

    constexpr void append(const XsvfValue& value, std::size_t bytes) {
        for (std::size_t position = bytes; position > 0; --position) {
            mSink.push_back(value.byteAt(position - 1));
        }
    }

    Sink& mSink;
    std::size_t mDataBytes = 0;
};

// A sink of fixed capacity, for compile time, where one byte too many is an error.
template <std::size_t kCapacity>
struct FixedBytes {
    std::array<uint8_t, kCapacity> bytes{};
    std::size_t size = 0;

    constexpr void push_back(uint8_t byte) { bytes[size++] = byte; }
};

// The bytes of a program, which is a callable that takes an assembler; the rest of the capacity stays 0.
template <std::size_t kCapacity, typename Program>
constexpr FixedBytes<kCapacity> assembleXsvf(Program program) {
    FixedBytes<kCapacity> sink;
    XsvfAssembler<FixedBytes<kCapacity>> assembler(sink);
    program(assembler);
    return sink;
}
