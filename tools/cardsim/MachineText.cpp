#include "tools/cardsim/MachineText.h"

#include <algorithm>
#include <optional>
#include <ostream>
#include <utility>

#include "files/PrintableText.h"
#include "images/ByteText.h"
#include "images/prom/ContentText.h"
#include "tools/cardsim/IdentityText.h"
#include "tools/cardsim/MachineArguments.h"

namespace cardsim {
namespace {

using Json = nlohmann::ordered_json;
using simulator::Card;

std::size_t erasedPagesOf(const simulator::PromCells& cells) {
    std::size_t erased = 0;
    for (std::size_t page = 0; page < simulator::kPromPages; ++page) {
        erased += cells.isPageErased(page) ? 1 : 0;
    }
    return erased;
}

std::string contentOf(const simulator::PromCells& cells) {
    const std::size_t erased = erasedPagesOf(cells);
    return images::contentText(simulator::decodeConfiguration(cells.pages())) + "; " +
           std::to_string(simulator::kPromPages - erased) + " pages programmed, " + std::to_string(erased) +
           " erased";
}

bool isLampOn(const Card& card) {
    return (card.jtagOutput() & simulator::registers::kActivityLamp) != 0;
}

void showCard(std::size_t index, const Card& card, bool on, std::ostream& out) {
    const simulator::Board& board = card.board();
    out << "\nCard " << index + 1 << ": " << nameOf(card) << '\n'
        << "  Board       " << images::modelText(board.modelCode) << ", " << images::boardText(board.revision)
        << '\n'
        << "  Identity    " << identityText(card.identity()) << '\n'
        << "  Running     " << (on ? images::contentText(card.running()) : "nothing, the machine is off")
        << '\n'
        << "  PROM        " << contentOf(card.cells()) << '\n'
        << "  Protection  " << images::hexadecimalText(card.protection(), 1) << '\n';
    if (on) {
        out << "  Lamp        " << (isLampOn(card) ? "on" : "off") << '\n';
    }
    for (const simulator::Fault& fault : card.faults().all()) {
        out << "  Fault       " << describe(fault) << '\n';
    }
    if (card.recordingRequest()) {
        out << "  Recording   " << describe(*card.recordingRequest()) << '\n';
    }
}

Json jsonOf(const std::optional<simulator::RecordingRequest>& request) {
    if (!request) {
        return nullptr;
    }
    const bool toTheEnd = request->microseconds == simulator::RecordingRequest::kMostMicroseconds;
    return {{"file", request->file},
            {"fromMicroseconds", request->fromMicroseconds},
            {"microseconds", toTheEnd ? Json() : Json(request->microseconds)}};
}

Json jsonOf(std::size_t index, const Card& card, bool on) {
    const simulator::Board& board = card.board();
    const std::size_t erased = erasedPagesOf(card.cells());
    Json faults = Json::array();
    for (const simulator::Fault& fault : card.faults().all()) {
        faults.push_back({{"kind", simulator::describe(fault.kind).name},
                          {"hasStruck", fault.struck && !fault.prevented},
                          {"wasPrevented", fault.prevented},
                          {"text", describe(fault)}});
    }
    return {{"number", index + 1},
            {"name", board.name},
            {"location", board.location},
            {"model", images::modelText(board.modelCode)},
            {"board", images::boardJson(board.revision)},
            {"identity", identityText(card.identity())},
            {"running", images::contentJson(on ? card.running() : std::nullopt)},
            {"prom", images::contentJson(simulator::decodeConfiguration(card.cells().pages()))},
            {"pagesProgrammed", simulator::kPromPages - erased},
            {"pagesErased", erased},
            {"protection", card.protection()},
            {"lamp", on ? Json(isLampOn(card)) : Json()},
            {"faults", std::move(faults)},
            {"recording", jsonOf(card.recordingRequest())}};
}

template <typename Value>
std::string wordFor(Value value, const Words<Value>& words) {
    return std::ranges::find(words, value, [](const auto& word) { return word.second; })->first;
}

Json jsonOf(const simulator::Drivers& drivers) {
    auto loaded = Json::array();
    for (const auto& [identifier, driver] : drivers.loaded) {
        loaded.push_back(identifier);
    }
    return {{"resident", drivers.resident},
            {"loaded", std::move(loaded)},
            {"administrator", wordFor(drivers.refusesAdministrator, kAdministratorWords)},
            {"privateDriver", wordFor(drivers.privateDriverFault, kPrivateDriverWords)}};
}

}  // namespace

std::string describe(const simulator::Drivers& drivers) {
    std::string text = drivers.resident ? "resident" : "";
    for (const auto& [identifier, driver] : drivers.loaded) {
        text += (text.empty() ? "" : ", ") + files::printable(identifier) + " loaded";
    }
    if (text.empty()) {
        text = "none";
    }
    if (drivers.refusesAdministrator) {
        text += "; administrator refused";
    }
    if (drivers.privateDriverFault == simulator::PrivateDriverFault::doesNotLoad) {
        text += "; private driver: does not load";
    }
    if (drivers.privateDriverFault == simulator::PrivateDriverFault::publishesNothing) {
        text += "; private driver: publishes nothing";
    }
    return text;
}

std::string describe(const simulator::Fault& fault) {
    const simulator::FaultKindDescription& kind = simulator::describe(fault.kind);
    std::string text(kind.name);
    if (kind.hasCode) {
        text += ", code " + images::hexadecimalText(fault.code, 8);
    }
    if (kind.hasPage) {
        text += ", page " + std::to_string(fault.page);
    }
    if (kind.hasTimes) {
        text += ", " + std::to_string(fault.times) + " times";
    }
    if (kind.hasFactor) {
        text += ", factor " + std::to_string(fault.factor);
    }
    if (fault.when == simulator::Fault::When::atAccess) {
        text += ", at access " + std::to_string(fault.count);
    }
    if (fault.when == simulator::Fault::When::atClock) {
        text += ", at clock " + std::to_string(fault.count);
    }
    if (fault.prevented) {
        return text + " (was prevented)";
    }
    return text + (fault.struck ? " (has struck)" : " (waiting)");
}

std::string describe(const simulator::RecordingRequest& request) {
    const std::string until =
        request.microseconds == simulator::RecordingRequest::kMostMicroseconds
            ? "its end"
            : std::to_string(request.fromMicroseconds + request.microseconds) + " microseconds";
    return "the next run, from " + std::to_string(request.fromMicroseconds) + " to " + until + ", into " +
           files::printable(request.file);
}

Json machineJson(const simulator::Machine& machine, bool isInUse) {
    Json cards = Json::array();
    for (std::size_t index = 0; index < machine.cardCount(); ++index) {
        cards.push_back(jsonOf(index, machine.card(index), machine.isOn()));
    }
    Json ledger = Json::array();
    for (const auto& entry : machine.ledger().entries()) {
        ledger.push_back({{"times", entry.times},
                          {"misuse", misuseName(entry.misuse)},
                          {"firstAccess", entry.firstAccess},
                          {"card", entry.card},
                          {"detail", entry.detail}});
    }
    return {{"on", machine.isOn()},
            {"inUse", isInUse},
            {"accesses", machine.accesses()},
            {"microseconds", machine.microseconds()},
            {"driver", jsonOf(machine.drivers())},
            {"cards", std::move(cards)},
            {"ledger", std::move(ledger)}};
}

void showMachine(const simulator::Machine& machine, std::ostream& out) {
    out << "Power       " << (machine.isOn() ? "on" : "off") << '\n'
        << "Accesses    " << machine.accesses() << " (" << machine.microseconds() << " microseconds)\n"
        << "Driver      " << describe(machine.drivers()) << '\n';
    for (std::size_t index = 0; index < machine.cardCount(); ++index) {
        showCard(index, machine.card(index), machine.isOn(), out);
    }

    out << "\nLedger      " << (machine.ledger().empty() ? "empty" : "") << '\n';
    for (const auto& entry : machine.ledger().entries()) {
        out << "  " << entry.times << " x " << misuseName(entry.misuse) << ", first at access "
            << entry.firstAccess
            << files::printable((entry.card.empty() ? "" : ", " + entry.card) + ": " + entry.detail) << '\n';
    }
}

}  // namespace cardsim
