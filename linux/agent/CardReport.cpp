#include "linux/agent/CardReport.h"

#include <ostream>

bool reportCards(CardKeeper& keeper, std::ostream& out) {
    const std::vector<pci::FoundCard> cards = keeper.list("");
    if (cards.empty()) {
        out << "No card is named in the configuration, or none of those named is in this computer.\n";
    }
    bool isOneUsable = false;
    for (const pci::FoundCard& card : cards) {
        out << card.address << "  " << card.name;
        if (card.location != card.address) {
            out << ", " << card.location;
        }
        out << (card.isSimulated ? ", simulated" : "") << "\n    "
            << (card.refusal.empty() ? "It can be used." : card.refusal) << "\n";
        isOneUsable |= card.refusal.empty();
    }
    return isOneUsable;
}
