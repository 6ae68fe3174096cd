#pragma once

// A card as a device on a guest computer's bus, for an emulator that asks about every access.

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/guest/GuestAccesses.h"
#include "simulator/guest/proxy/PciConfiguration.h"
#include "simulator/guest/proxy/ProxyMessages.h"
#include "simulator/machine/Machine.h"

namespace simulator {

class ProxyDevice {
  public:
    // The machine, whose card it is, must outlive the device.
    ProxyDevice(Machine& machine, Card& card, const PciFunction& function)
        : machine_(machine), card_(card), configuration_(function), accesses_(machine, card) {}

    // Carries out a request. Returns the value to answer with; nothing for a request without a value. The bus
    // and the guest have the lowest byte first. A card that does not answer on the bus reads as ones.
    //
    // An access that is not of one aligned word, or is beyond what the card has, also reads as ones, changes
    // nothing and goes into the machine's ledger.
    std::optional<uint64_t> carryOut(const ProxyRequest& request);

    bool hasPower() const { return machine_.isOn(); }

    const GuestAccesses& accesses() const { return accesses_; }

  private:
    bool answers() const;
    uint64_t accessMemory(const ProxyRequest& request);

    Machine& machine_;
    Card& card_;
    PciConfiguration configuration_;
    GuestAccesses accesses_;
};

}  // namespace simulator
