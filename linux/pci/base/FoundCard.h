#pragma once

// A card in this computer, as the agent describes it to its clients.

#include <string>

namespace pci {

// All texts are printable ASCII.
struct FoundCard {
    std::string address;       // on the bus, such as 0000:05:01.0
    std::string name;          // from the rules
    std::string location;      // such as "PCI slot 3"; else the address
    bool isSimulated = false;  // the rules say so, for a card on a guest computer's bus
    std::string refusal;       // why it cannot be used, and what to do; empty if it can

    bool isUsable() const { return refusal.empty(); }
};

}  // namespace pci
