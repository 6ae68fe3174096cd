#include "tools/cardsim/ShowMachine.h"

#include <ostream>

#include "files/PrintableText.h"
#include "images/BoardRevision.h"
#include "images/ByteText.h"
#include "images/CardModels.h"
#include "images/FirmwareDate.h"
#include "tools/cardsim/DriverCommand.h"
#include "tools/cardsim/FaultCommands.h"
#include "tools/cardsim/IdentityText.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/cardsim/RecordCommand.h"

namespace cardsim {
namespace {

using simulator::Card;
using simulator::FpgaConfiguration;

std::string modelName(uint8_t code) {
    const images::CardModel* const model = images::modelCoded(code);
    return model != nullptr ? std::string(model->name) : "model " + images::hexadecimalText(code, 2);
}

std::string boardName(uint8_t revision) {
    if (revision == 0)
        return "board without revision";
    const auto letter = images::boardRevisionName(revision);
    return letter ? "board " + *letter : "board revision " + std::to_string(revision);
}

std::string contentOf(const simulator::PromCells& cells) {
    std::size_t erased = 0;
    for (std::size_t page = 0; page < simulator::kPromPages; ++page)
        erased += cells.isPageErased(page) ? 1 : 0;
    return describe(simulator::decodeConfiguration(cells.pages())) + "; " +
           std::to_string(simulator::kPromPages - erased) + " pages programmed, " + std::to_string(erased) +
           " erased";
}

void showCard(std::size_t index, const Card& card, bool on, std::ostream& out) {
    const simulator::Board& board = card.board();
    out << "\nCard " << index + 1 << ": " << nameOf(card) << '\n'
        << "  Board       " << modelName(board.modelCode) << ", " << boardName(board.revision) << '\n'
        << "  Identity    " << identityName(card.identity()) << '\n'
        << "  Running     " << (on ? describe(card.running()) : "nothing, the machine is off") << '\n'
        << "  PROM        " << contentOf(card.cells()) << '\n'
        << "  Protection  " << images::hexadecimalText(card.protection(), 1) << '\n';
    if (on)
        out << "  Lamp        "
            << ((card.jtagOutput() & simulator::registers::kActivityLamp) != 0 ? "on" : "off") << '\n';
    for (const simulator::Fault& fault : card.faults().all())
        out << "  Fault       " << describe(fault) << '\n';
    if (card.recordingRequest())
        out << "  Recording   " << describe(*card.recordingRequest()) << '\n';
}

}  // namespace

std::string describe(const std::optional<FpgaConfiguration>& configuration) {
    if (!configuration)
        return "no configuration";
    return modelName(configuration->modelCode) + ", " + boardName(configuration->boardRevision) +
           ", firmware " + configuration->flavour + std::to_string(configuration->version) + " of " +
           images::firmwareDateText(configuration->date)
               .value_or("date " + images::hexadecimalText(configuration->date, 4));
}

void showMachine(const simulator::Machine& machine, std::ostream& out) {
    out << "Power       " << (machine.isOn() ? "on" : "off") << '\n'
        << "Accesses    " << machine.accesses() << " (" << machine.microseconds() << " microseconds)\n"
        << "Driver      " << describe(machine.drivers()) << '\n';
    for (std::size_t index = 0; index < machine.cardCount(); ++index)
        showCard(index, machine.card(index), machine.isOn(), out);

    out << "\nLedger      " << (machine.ledger().empty() ? "empty" : "") << '\n';
    for (const auto& entry : machine.ledger().entries())
        out << "  " << entry.times << " x " << misuseName(entry.misuse) << ", first at access "
            << entry.firstAccess
            << files::printable((entry.card.empty() ? "" : ", " + entry.card) + ": " + entry.detail) << '\n';
}

}  // namespace cardsim
