#include "linux/agent/CardReport.h"

#include <ostream>

#include "linux/pci/base/Refusals.h"

namespace agent {

bool reportCards(CardKeeper& keeper, std::ostream& out) {
    const std::vector<pci::FoundCard> cards = keeper.list("");
    if (cards.empty()) {
        out << pci::refusals::noCard(keeper.rulesFolder()) << "\n";
    }
    bool isOneUsable = false;
    for (pci::FoundCard card : cards) {
        if (card.isUsable() && keeper.isTaken(card.address)) {
            card.refusal = pci::refusals::kNotTakenBack;
        }
        out << card.address << "  " << card.name;
        if (card.location != card.address) {
            out << ", " << card.location;
        }
        out << (card.isSimulated ? ", simulated" : "") << "\n    "
            << (card.isUsable() ? "It can be used." : card.refusal) << "\n";
        isOneUsable |= card.isUsable();
    }
    return isOneUsable;
}

}  // namespace agent
