#pragma once

// The whole machine: its cards, its clock, its power and its processes. It starts switched off.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Host.h"
#include "simulator/base/Clock.h"
#include "simulator/base/Ledger.h"
#include "simulator/machine/Card.h"
#include "simulator/machine/Drivers.h"

namespace simulator {

class Machine {
  public:
    Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    // Adds a card after the others; the machine must be off. The card lives, and stays where it is in
    // memory, until it is removed.
    Card& addCard(Board board, PromCells cells);
    // Removes a card; the machine must be off.
    void removeCard(std::size_t index);
    // The first "PCI slot N" in which there is no card.
    std::string freeSlot() const;
    // Cards by index, from 0. Throws std::out_of_range if there are fewer.
    std::size_t cardCount() const { return cards_.size(); }
    Card& card(std::size_t index) { return *cards_.at(index); }
    const Card& card(std::size_t index) const { return *cards_.at(index); }

    bool isOn() const { return on_; }
    // Neither does anything if the machine is already in that state. At power-up every FPGA loads its
    // configuration; switching off interrupts whatever a PROM is doing.
    void powerOn();
    void powerOff();
    // Sets what is called once a fault has cut the power, to end the program that ran on the machine. Without
    // it the program continues with cards that do not answer.
    void onPowerLost(std::function<void()> programEnds) { programEnds_ = std::move(programEnds); }
    // While sleep is prevented, the fault that puts the machine to sleep does nothing. At first it is not.
    void preventSleep() { sleepIsPrevented_ = true; }
    void allowSleep() { sleepIsPrevented_ = false; }
    // Continues an earlier run of a machine that stayed on, without a power-up. Resume the cards first.
    void resume();

    // Begin the recordings that are requested, and end them. Throw what the cards' functions throw; the first
    // also if two cards would be recorded in the same file.
    void beginRecordings();
    void endRecordings();

    // Whoever carries out an access ticks the clock first, and wakes it if tick() says so.
    Clock& clock() { return clock_; }
    uint64_t accesses() const { return clock_.accesses(); }
    uint64_t microseconds() const { return clock_.microseconds(); }
    Drivers& drivers() { return drivers_; }
    const Drivers& drivers() const { return drivers_; }

    Ledger& ledger() { return ledger_; }
    const Ledger& ledger() const { return ledger_; }

    // The processes while the machine is on, in the system's order. Their serial numbers never change.
    std::vector<Host::Process> processes() const;
    // Sends the shutdown event to a process: the login process switches the machine off, the others ignore
    // it. False if there is no such process.
    [[nodiscard]] bool deliverShutDownEvent(uint64_t processSerialNumber);

  private:
    void losePower();
    // Takes the power away from the cards and gives it back, unless that is prevented; true if it was done.
    bool sleep();
    void powerUpCards();
    // Calls timePassed() of every card.
    void timePassed();

    Clock clock_;
    Ledger ledger_;
    Drivers drivers_;
    std::vector<std::unique_ptr<Card>> cards_;
    std::function<void()> programEnds_;
    bool on_ = false;
    bool sleepIsPrevented_ = false;
};

}  // namespace simulator
