#pragma once

// The whole machine: its cards, its clock, its power and its processes. It is off until it is switched on.

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

    // Plugs a card in, which only a machine that is off allows. The card lives as long as the machine.
    Card& addCard(Board board, PromCells cells);
    // Pulls a card out, which only a machine that is off allows too.
    void removeCard(std::size_t index);
    std::size_t cardCount() const { return cards_.size(); }
    Card& card(std::size_t index) { return *cards_.at(index); }
    const Card& card(std::size_t index) const { return *cards_.at(index); }

    bool isOn() const { return on_; }
    // Both change nothing when the machine already is so. Each power-up has every FPGA configure itself anew;
    // switching off breaks off whatever a PROM is doing.
    void powerOn();
    void powerOff();
    // What is to be done once a fault has taken the power away: the program, which ran on this machine too,
    // is to end. Without it the program goes on, with cards that do not answer.
    void onPowerLost(std::function<void()> programEnds) { programEnds_ = std::move(programEnds); }
    // Switches on without a power-up, to carry on where an earlier run of a machine that stayed on ended. The
    // cards are resumed one by one.
    void resume();

    // Begins the recordings that are requested, and ends those that were begun; MachineError as the cards
    // say.
    void beginRecordings();
    void endRecordings();

    Clock& clock() { return clock_; }
    uint64_t accesses() const { return clock_.accesses(); }
    uint64_t microseconds() const { return clock_.microseconds(); }
    Drivers& drivers() { return drivers_; }
    const Drivers& drivers() const { return drivers_; }

    Ledger& ledger() { return ledger_; }
    const Ledger& ledger() const { return ledger_; }

    // What runs while the machine is on, in the order in which the system lists it. Serial numbers stay.
    std::vector<Host::Process> processes() const;
    // Hands the shut-down event to a process; the login process switches the machine off, the others take no
    // notice. False when there is no such process.
    bool deliverShutDownEvent(uint64_t processSerialNumber);

  private:
    void losePower();
    // Has every card look after those whose moment has come.
    void timePassed();

    Clock clock_;
    Ledger ledger_;
    Drivers drivers_;
    std::vector<std::unique_ptr<Card>> cards_;
    std::function<void()> programEnds_;
    bool on_ = false;
};

}  // namespace simulator
