#include <cstddef>
#include <nlohmann/json.hpp>
#include <span>

#include "simulator/storage/StoredMachine.h"

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

std::string hexadecimal(std::span<const uint8_t> bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
    return text;
}

Json encode(const ShiftRegister& shift) {
    return {{"bits", shift.bits()}, {"content", hexadecimal(shift.bytes())}};
}

Json encode(const JtagDevice::State& state) {
    return {{"tap", tapStateName(state.tap)},
            {"instruction", state.instruction},
            {"tdo", state.tdo},
            {"instructionShift", encode(state.instructionShift)},
            {"dataShift", encode(state.dataShift)}};
}

Json encode(const Prom::State& state) {
    return {{"programmingMode", state.programmingMode},
            {"mode", state.mode},
            {"address", state.address},
            {"pageData", hexadecimal(state.pageData)},
            {"userCode", state.userCode},
            {"controlData", state.controlData},
            {"loadedLast", Prom::kRegisterNames[static_cast<std::size_t>(state.loadedLast)]},
            {"operation", Prom::kOperationNames[static_cast<std::size_t>(state.operation)]},
            {"doneAt", state.doneAt}};
}

Json encode(const JtagChain::State& state) {
    return {{"tck", state.tck},
            {"clocks", state.clocks},
            {"scanBits", state.scanBits},
            {"shortScan", state.shortScan}};
}

Json encode(const std::optional<FpgaConfiguration>& configuration) {
    if (!configuration) {
        return nullptr;
    }
    return {{"modelCode", configuration->modelCode},
            {"boardRevision", configuration->boardRevision},
            {"flavour", std::string(1, configuration->flavour)},
            {"version", configuration->version},
            {"date", configuration->date}};
}

Json encode(const Fault& fault) {
    const FaultKindDescription& kind = describe(fault.kind);
    Json json{{"kind", kind.name}};
    if (kind.hasCode) {
        json["code"] = fault.code;
    }
    if (kind.hasPage) {
        json["page"] = fault.page;
    }
    if (kind.hasTimes) {
        json["times"] = fault.times;
    }
    if (kind.hasFactor) {
        json["factor"] = fault.factor;
    }
    json["when"] = Fault::kWhenNames[static_cast<std::size_t>(fault.when)];
    json["count"] = fault.count;
    json["struck"] = fault.struck;
    if (kind.canBePrevented) {
        json["prevented"] = fault.prevented;
    }
    return json;
}

template <typename Element>
Json encodeAll(const std::vector<Element>& elements);

Json encode(const StoredMachine::Card& card) {
    Json json{{"name", card.board.name},
              {"location", card.board.location},
              {"modelCode", card.board.modelCode},
              {"boardRevision", card.board.revision},
              {"promFile", card.promFile}};
    if (card.powered) {
        json["running"] = encode(card.powered->running);
        json["jtagOutput"] = card.powered->jtagOutput;
        json["chain"] = encode(card.powered->chain);
        json["promJtag"] = encode(card.powered->promJtag);
        json["prom"] = encode(card.powered->prom);
        json["fpgaJtag"] = encode(card.powered->fpgaJtag);
    }
    if (!card.faults.empty()) {
        json["faults"] = encodeAll(card.faults);
    }
    if (card.recording) {
        json["recording"] = {{"file", card.recording->file},
                             {"fromMicroseconds", card.recording->fromMicroseconds},
                             {"microseconds", card.recording->microseconds}};
    }
    return json;
}

Json encode(const Drivers& drivers, bool on) {
    Json json{{"resident", drivers.resident},
              {"refusesAdministrator", drivers.refusesAdministrator},
              {"privateDriverFault",
               kPrivateDriverFaultNames[static_cast<std::size_t>(drivers.privateDriverFault)]}};
    if (on) {
        json["loaded"] = Json::array();
        for (const auto& [identifier, driver] : drivers.loaded) {
            json["loaded"].push_back({{"identifier", identifier},
                                      {"serviceClass", driver.serviceClass},
                                      {"secondsToAttach", driver.secondsToAttach}});
        }
    }
    return json;
}

Json encode(const Ledger::Entry& entry) {
    return {{"misuse", misuseName(entry.misuse)},
            {"card", entry.card},
            {"detail", entry.detail},
            {"firstAccess", entry.firstAccess},
            {"times", entry.times}};
}

template <typename Element>
Json encodeAll(const std::vector<Element>& elements) {
    Json json = Json::array();
    for (const Element& element : elements) {
        json.push_back(encode(element));
    }
    return json;
}

}  // namespace

std::string encodeMachine(const StoredMachine& machine) {
    const Json json{{"format", kMachineFormat},          {"on", machine.on},
                    {"accesses", machine.accesses},      {"drivers", encode(machine.drivers, machine.on)},
                    {"cards", encodeAll(machine.cards)}, {"ledger", encodeAll(machine.ledger)}};
    constexpr int kIndent = 2;
    // Invalid UTF-8 in a name must not keep a machine from being saved.
    return json.dump(kIndent, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace simulator
