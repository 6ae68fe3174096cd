#pragma once

// Drives a simulated card's JTAG chain the way a driver does: by loads and stores in its register window.

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <vector>

#include "simulator/Prom.h"
#include "simulator/SimulatedHost.h"

namespace simulator {

inline constexpr uint32_t kOutput = 0x100;
inline constexpr uint32_t kInput = 0x108;

class Probe {
  public:
    enum class Scan { data, instruction };

    // Opens and maps one of the machine's services.
    explicit Probe(Host& host, std::size_t index = 0) : host_(host) {
        const auto connection =
            host.openService(host.servicesOfClass("com_VornLabs_driver_VornMxDevice").at(index));
        base_ = static_cast<uint32_t*>(host.mapMemory(connection.value(), 0).value().base);
        swap_ = (host.loadWord(base_) & 0xFFFF) != 0x564F;
    }

    [[nodiscard]] uint32_t* base() const { return base_; }
    uint32_t read(uint32_t offset) { return ordered(host_.loadWord(base_ + offset / 4)); }
    void write(uint32_t offset, uint32_t value) { host_.storeWord(base_ + offset / 4, ordered(value)); }
    bool tdo() { return (read(kInput) & 0x80) != 0; }

    void drive(bool tck, bool tms, bool tdi = false) {
        write(kOutput, (tck ? 0x40U : 0) | (tms ? 0x20U : 0) | (tdi ? 0x10U : 0));
    }

    // One cycle that ends low; makes three stores.
    void clock(bool tms, bool tdi = false) {
        drive(false, tms, tdi);
        drive(true, tms, tdi);
        drive(false, tms, tdi);
    }

    // To Run-Test/Idle from anywhere.
    void reset() {
        for (int i = 0; i < 5; ++i)
            clock(true);
        clock(false);
    }

    // From Run-Test/Idle to Shift-DR or Shift-IR.
    void enter(Scan scan) {
        clock(true);
        if (scan == Scan::instruction)
            clock(true);
        clock(false);
        clock(false);
    }

    // Shifts bits, leaves the Shift state with the last of them, and returns what came out.
    std::vector<bool> shift(const std::vector<bool>& in) {
        std::vector<bool> out;
        for (std::size_t i = 0; i < in.size(); ++i) {
            out.push_back(tdo());
            clock(i + 1 == in.size(), in[i]);
        }
        return out;
    }

    // From Exit1 or Exit2 through Update to Run-Test/Idle.
    void update() {
        clock(true);
        clock(false);
    }

    // A whole scan from Run-Test/Idle back to it.
    std::vector<bool> scan(Scan scan, const std::vector<bool>& in) {
        enter(scan);
        auto out = shift(in);
        update();
        return out;
    }

    // Gives the PROM an instruction, the FPGA bypass.
    void instruction(uint32_t code) { scan(Scan::instruction, bitsOf(code << 5 | 0x1F, 13)); }

    // Scans the PROM's data register of so many bits behind the FPGA's bypass bit; returns what it held.
    uint32_t data(uint32_t value, std::size_t bits) {
        std::vector<bool> in = bitsOf(value, bits);
        in.insert(in.begin(), false);
        const auto out = scan(Scan::data, in);
        EXPECT_FALSE(out[0]) << "the bypass bit captures 0";
        uint32_t number = 0;
        for (std::size_t i = 0; i < bits; ++i)
            number |= static_cast<uint32_t>(out[i + 1]) << i;
        return number;
    }

    std::vector<uint8_t> page(std::span<const uint8_t> content) {
        std::vector<bool> in{false};
        for (std::size_t i = 0; i < content.size() * 8; ++i)
            in.push_back((content[i / 8] >> (i % 8) & 1) != 0);
        const auto out = scan(Scan::data, in);
        std::vector<uint8_t> held(content.size());
        for (std::size_t i = 0; i < held.size() * 8; ++i)
            held[i / 8] = static_cast<uint8_t>(held[i / 8] | out[i + 1] << (i % 8));
        return held;
    }

    void waitAccesses(uint64_t accesses) {
        while (accesses-- > 0)
            host_.loadWord(base_ + kOutput / 4);
    }
    void wait(uint64_t microseconds) { waitAccesses(microseconds * 3); }

    // The steps of an update.
    void enterProgramming() {
        instruction(Prom::enterProgrammingInstruction);
        data(0x34, 6);
    }
    uint32_t address(uint32_t value) {
        instruction(Prom::addressInstruction);
        return data(value, 16);
    }
    void program(uint64_t microseconds = 14000) {
        instruction(Prom::programInstruction);
        wait(microseconds);
    }
    void loadPage(std::span<const uint8_t> content) {
        instruction(Prom::pageDataInstruction);
        page(content);
    }
    uint32_t userCode(uint32_t value = 0xFFFFFFFF) {
        instruction(Prom::userCodeInstruction);
        return data(value, 32);
    }
    void leaveProgramming(uint64_t microseconds = 4000) {
        instruction(Prom::leaveProgrammingInstruction);
        wait(microseconds);
        instruction(Prom::bypassInstruction);
    }

    static std::vector<bool> bitsOf(uint32_t value, std::size_t bits) {
        std::vector<bool> list;
        for (std::size_t i = 0; i < bits; ++i)
            list.push_back((value >> i & 1) != 0);
        return list;
    }

  private:
    [[nodiscard]] uint32_t ordered(uint32_t value) const {
        return !swap_ ? value : value >> 24 | (value >> 8 & 0xFF00) | (value & 0xFF00) << 8 | value << 24;
    }

    Host& host_;
    uint32_t* base_;
    bool swap_;
};

}  // namespace simulator
