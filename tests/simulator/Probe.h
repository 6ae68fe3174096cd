#pragma once

// Drives a simulated card's JTAG chain as a driver does, by loads and stores in its register window.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/CardDriver.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/jtag/Prom.h"
#include "simulator/machine/DefaultMachine.h"

namespace simulator {

class Probe {
  public:
    enum class Scan { data, instruction };
    using Bits = std::vector<bool>;  // in the order of shifting

    // Opens and maps one of the machine's services.
    explicit Probe(Host& host, std::size_t index = 0) : host_(host) {
        const auto connection = host.openService(host.servicesOfClass(card_driver::kServiceClass).at(index));
        base_ = static_cast<uint32_t*>(host.mapMemory(connection.value(), 0).value().base);
        swap_ = (host.loadWord(base_) & 0xFFFF) != 0x564F;
    }

    uint32_t read(uint32_t offset) { return ordered(host_.loadWord(base_ + offset / 4)); }
    void write(uint32_t offset, uint32_t value) { host_.storeWord(base_ + offset / 4, ordered(value)); }
    bool tdo() { return (read(0x108) & 0x80) != 0; }

    void drive(bool tck, bool tms, bool tdi = false) {
        write(0x100, (tck ? 0x40U : 0) | (tms ? 0x20U : 0) | (tdi ? 0x10U : 0));
    }

    // One cycle that ends low, in three stores.
    void clock(bool tms, bool tdi = false) {
        for (const bool tck : {false, true, false}) {
            drive(tck, tms, tdi);
        }
    }
    void clocks(std::initializer_list<int> tms) {
        for (const int level : tms) {
            clock(level != 0);
        }
    }

    // From any state to Run-Test/Idle.
    void reset() { clocks({1, 1, 1, 1, 1, 0}); }
    // From Run-Test/Idle to Shift-DR or Shift-IR.
    void enter(Scan which) { which == Scan::data ? clocks({1, 0, 0}) : clocks({1, 1, 0, 0}); }

    // Shifts bits, leaves the Shift state with the last of them, and returns what came out.
    Bits shift(const Bits& in) {
        Bits out;
        for (std::size_t i = 0; i < in.size(); ++i) {
            out.push_back(tdo());
            clock(i + 1 == in.size(), in[i]);
        }
        return out;
    }
    // A whole scan, from Run-Test/Idle and back.
    Bits scan(Scan which, const Bits& in) {
        enter(which);
        Bits out = shift(in);
        clocks({1, 0});
        return out;
    }
    // Gives the PROM an instruction and the FPGA its bypass instruction.
    void instruction(uint32_t code) { scan(Scan::instruction, bitsOf(code << 5 | 0x1F, 13)); }

    // Scans the PROM's data register, after the FPGA's bypass bit; returns what it held.
    Bits promData(Bits in) {
        in.insert(in.begin(), false);
        Bits out = scan(Scan::data, in);
        EXPECT_FALSE(out[0]) << "the bypass bit captures 0";
        out.erase(out.begin());
        return out;
    }
    uint32_t data(uint32_t value, std::size_t bits) {
        uint32_t held = 0;
        for (const Bits out = promData(bitsOf(value, bits)); bits-- > 0;) {
            held = held << 1 | static_cast<uint32_t>(out[bits]);
        }
        return held;
    }
    void wait(uint64_t microseconds, uint64_t accessesFewer = 0) {
        for (uint64_t accesses = microseconds * 3 - accessesFewer; accesses > 0; --accesses) {
            read(0x100);
        }
    }

    // Gives an instruction and scans its data register; returns what the register held.
    uint32_t scanRegister(uint32_t code, uint32_t value, std::size_t bits) {
        instruction(code);
        return data(value, bits);
    }
    std::vector<uint8_t> scanPage(uint32_t code, std::span<const uint8_t> content) {
        instruction(code);
        Bits in;
        for (const uint8_t byte : content) {
            std::ranges::copy(bitsOf(byte, 8), std::back_inserter(in));
        }
        const Bits out = promData(in);
        std::vector<uint8_t> held(content.size());
        for (std::size_t i = 0; i < out.size(); ++i) {
            held[i / 8] = static_cast<uint8_t>(held[i / 8] | out[i] << (i % 8));
        }
        return held;
    }

    // The steps of an update.
    uint32_t enterProgramming() { return scanRegister(Prom::enterProgrammingInstruction, 0x34, 6); }
    uint32_t address(uint32_t value) { return scanRegister(Prom::addressInstruction, value, 16); }
    uint32_t userCode(uint32_t value) { return scanRegister(Prom::userCodeInstruction, value, 32); }
    uint32_t controlData(uint32_t value) { return scanRegister(Prom::controlDataInstruction, value, 3); }
    // Gives an instruction that takes time, waits, and gives another.
    void operate(uint32_t code, uint64_t microseconds) {
        instruction(code);
        wait(microseconds);
        instruction(Prom::bypassInstruction);
    }
    void program(uint64_t microseconds = 14000) { operate(Prom::programInstruction, microseconds); }
    void programPage(uint32_t number, std::span<const uint8_t> content) {
        address(number * 0x20);
        scanPage(Prom::pageDataInstruction, content);
        program();
    }
    void programUserCode(uint32_t value, uint64_t microseconds = 14000) {
        address(0x8000);
        userCode(value);
        program(microseconds);
    }

    static Bits bitsOf(uint32_t value, std::size_t bits) {
        Bits list;
        for (std::size_t i = 0; i < bits; ++i) {
            list.push_back((value >> i & 1) != 0);
        }
        return list;
    }

  private:
    uint32_t ordered(uint32_t value) const {
        return !swap_ ? value : value >> 24 | (value >> 8 & 0xFF00) | (value & 0xFF00) << 8 | value << 24;
    }

    Host& host_;
    uint32_t* base_;
    bool swap_;
};

// The message that an action throws; empty if it succeeds.
inline std::string complaintOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

// The default machine, switched on, with a probe on its first card.
class ProbedMachineTest : public testing::Test {
  protected:
    ProbedMachineTest() {
        addDefaultCards(machine_);
        machine_.powerOn();
        probe_.emplace(host_);
        probe_->reset();
    }

    Card& card() { return machine_.card(0); }
    JtagChain& chain() { return card().chain(); }
    std::vector<uint8_t> cellsOf(std::size_t page) {
        const auto bytes = card().cells().bytesOf(PromCells::page(page));
        return {bytes.begin(), bytes.end()};
    }
    std::vector<Misuse> misuses() {
        std::vector<Misuse> found;
        for (const auto& entry : machine_.ledger().entries()) {
            found.insert(found.end(), static_cast<std::size_t>(entry.times), entry.misuse);
        }
        return found;
    }

    Machine machine_;
    SimulatedHost host_{machine_, {}};
    std::optional<Probe> probe_;
};

}  // namespace simulator
