#pragma once

// One run of a guest computer with the cards of a simulated machine on its bus.

#include <memory>
#include <string>
#include <vector>

#include "simulator/guest/proxy/Emulator.h"
#include "simulator/guest/proxy/PciFunction.h"
#include "simulator/guest/proxy/ProxyConnection.h"
#include "simulator/machine/Machine.h"

namespace simulator {

class GuestSession {
  public:
    // Connections for all cards that answer on the bus of a machine that is on. The machine must outlive the
    // session. Throws files::UserError.
    GuestSession(Machine& machine, const PciFunction& function);

    // Starts the emulator with a command line for QEMU, to which the cards are added, and serves it until it
    // ends. Returns its exit code, in a shell's terms. If the machine loses its power, the emulator is killed
    // before it gets another answer, and the machine is off afterwards. SIGINT, SIGTERM and SIGHUP ask the
    // emulator to end, and kill it if they come again. Throws files::UserError.
    [[nodiscard]] int run(std::vector<std::string> command);

    // A line for each card that was on the bus: its number, and its accesses.
    std::string report() const;

  private:
    struct Seat {
        Seat(std::size_t number, Machine& machine, Card& card, const PciFunction& function)
            : cardNumber(number), device(machine, card, function) {}

        std::size_t cardNumber;  // from 1
        ProxyDevice device;
        ProxyConnection connection{device};
    };

    void addTo(std::vector<std::string>& command) const;
    // Serves until the emulator has ended; returns its exit code.
    int serve(Emulator& emulator, int signals);
    static void passSignalsOn(const Emulator& emulator, int signals, bool& hasAsked);

    Machine& machine_;
    std::vector<std::unique_ptr<Seat>> seats_;
};

}  // namespace simulator
