#include <algorithm>
#include <iomanip>
#include <map>
#include <memory>
#include <optional>
#include <ostream>

#include "files/UserError.h"
#include "images/ListingWords.h"
#include "simulator/base/Faults.h"
#include "tools/cardsim/Commands.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/cardsim/MachineText.h"
#include "tools/command_line/CommandLine.h"

namespace cardsim {
namespace {

using simulator::Fault;
using simulator::FaultKind;
using simulator::FaultKindDescription;
using simulator::faultKinds;

struct FaultOptions {
    std::string folder;
    std::size_t number = 0;
    std::string kind;
    std::optional<uint32_t> code, page, times, factor;
    std::optional<uint64_t> atAccess, atClock;
};

std::map<std::string, FaultKind> kindsByName() {
    std::map<std::string, FaultKind> kinds;
    for (std::size_t index = 0; index < faultKinds().size(); ++index) {
        kinds.emplace(faultKinds()[index].name, static_cast<FaultKind>(index));
    }
    return kinds;
}

// Stores an option's value. Refuses an option that the kind of fault does not take, and the lack of one that
// it needs.
void take(std::string_view kind, const char* option, bool has, const std::optional<uint32_t>& given,
          uint32_t& into) {
    if (has == given.has_value()) {
        into = given.value_or(into);
        return;
    }
    tools::refuseUsage(option + std::string(": The fault ") + std::string(kind) +
                       (has ? " needs this option." : " does not take this option."));
}

Fault faultFrom(const FaultOptions& options) {
    Fault fault{.kind = kindsByName().at(options.kind)};
    const FaultKindDescription& kind = simulator::describe(fault.kind);
    take(kind.name, "--code", kind.hasCode, options.code, fault.code);
    take(kind.name, "--page", kind.hasPage, options.page, fault.page);
    take(kind.name, "--times", kind.hasTimes, options.times, fault.times);
    take(kind.name, "--factor", kind.hasFactor, options.factor, fault.factor);
    if (options.atAccess) {
        fault.when = Fault::When::atAccess;
    } else if (options.atClock) {
        fault.when = Fault::When::atClock;
    }
    fault.count = options.atAccess.value_or(options.atClock.value_or(0));
    return fault;
}

void inject(const FaultOptions& options, std::ostream& out) {
    const Fault fault = faultFrom(options);
    const auto directory = openMachine(options.folder);
    simulator::Card& card = directory->machine().card(indexOfCard(directory->machine(), options.number));
    card.inject(fault);
    directory->save();
    const auto& faults = card.faults().all();
    // The newest of its kind, since a card can have one for each of several pages.
    const auto injected = std::ranges::find(faults.rbegin(), faults.rend(), fault.kind, &Fault::kind);
    out << nameOf(card) << ": " << simulator::describe(fault.kind).meaning << "; "
        << describe(injected == faults.rend() ? fault : *injected) << ".\n";
}

void clear(const FaultOptions& options, std::ostream& out) {
    const auto directory = openMachine(options.folder);
    simulator::Machine& machine = directory->machine();
    const bool all = options.number == 0;
    const std::size_t first = all ? 0 : indexOfCard(machine, options.number);
    const std::size_t last = all ? machine.cardCount() : first + 1;
    std::optional<FaultKind> kind;
    if (!options.kind.empty()) {
        kind = kindsByName().at(options.kind);
    }
    std::size_t cleared = 0;
    for (std::size_t index = first; index < last; ++index) {
        cleared += machine.card(index).clearFaults(kind);
    }
    if (cleared == 0 && (!all || kind)) {
        throw files::UserError("There is no such fault to clear.");
    }
    directory->save();
    out << "Cleared " << cleared << (cleared == 1 ? " fault.\n" : " faults.\n");
}

void listKinds(std::ostream& out) {
    constexpr int kNameWidth = 24;
    for (const FaultKindDescription& kind : faultKinds()) {
        out << std::left << std::setw(kNameWidth) << kind.name << kind.meaning
            << (kind.hasCode ? " (--code)" : "") << (kind.hasPage ? " (--page)" : "")
            << (kind.hasTimes ? " (--times)" : "") << (kind.hasFactor ? " (--factor)" : "") << '\n';
    }
}

// For the help: "Kinds: chain-broken, ..."
std::string kindsOfFaults() {
    std::string text;
    for (const FaultKindDescription& kind : faultKinds()) {
        text.append(text.empty() ? "Kinds: " : ", ").append(kind.name);
    }
    return text + ".\n";
}

std::string checkKind(const std::string& name) {
    return kindsByName().contains(name) ? "" : "Unknown fault " + name + "; see \"cardsim fault kinds\".";
}

std::optional<uint32_t> parseCode(const std::string& text) {
    try {
        return images::parseNumber(text, UINT32_MAX);
    } catch (const files::UserError&) {
        return std::nullopt;
    }
}

std::string checkCode(const std::string& text) {
    const auto code = parseCode(text);
    if (!code) {
        return '"' + text + "\" is not a 32-bit number.";
    }
    return *code == simulator::Prom::kIdentificationCode
               ? text + " is the PROM's own code, so it is not foreign."
               : "";
}

void addParameters(CLI::App& command, FaultOptions& options) {
    command
        .add_option_function<std::string>(
            "--code", [&options](const std::string& text) { options.code = parseCode(text); },
            "The foreign identification code, decimal or hexadecimal with 0x")
        ->check(checkCode)
        ->type_name("NUMBER");
    const auto addNumber = [&command](const char* name, std::optional<uint32_t>& number,
                                      const std::string& what, uint32_t least, uint32_t most) {
        const std::string range = ", " + std::to_string(least) + " to " + std::to_string(most);
        return command.add_option(name, number, what + range)->transform(tools::wholeNumber(least, most));
    };
    addNumber("--page", options.page, "The page", 0, simulator::kPromPages - 1)->type_name("PAGE");
    addNumber("--times", options.times, "How many times it happens", 1, Fault::kMostTimes)
        ->type_name("NUMBER");
    addNumber("--factor", options.factor, "How many times as long programming takes", Fault::kLeastFactor,
              Fault::kMostFactor)
        ->type_name("NUMBER");
    auto* const access =
        command
            .add_option("--at-access", options.atAccess, "Strike before this access to the machine's cards")
            ->transform(tools::wholeNumber(0))
            ->type_name("COUNT");
    command
        .add_option("--at-clock", options.atClock, "Strike after this JTAG clock of the card since power-up")
        ->excludes(access)
        ->transform(tools::wholeNumber(0))
        ->type_name("COUNT");
}

}  // namespace

void addFaultCommands(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<FaultOptions>();
    CLI::App* const fault = program.add_subcommand("fault", "Break a card on purpose, or repair it");
    fault->require_subcommand(1);

    CLI::App* const injection = fault->add_subcommand("inject", "Give a card a fault");
    addFolder(*injection, options->folder);
    addCardNumber(*injection, options->number);
    injection->add_option("kind", options->kind, "The kind of fault, from \"cardsim fault kinds\"")
        ->required()
        ->check(checkKind)
        ->type_name("KIND");
    addParameters(*injection, *options);
    injection->footer(kindsOfFaults() +
                      "Without --at-access or --at-clock, a fault strikes as soon as the card has power.");
    injection->callback([options, &out] { inject(*options, out); });

    CLI::App* const clearing = fault->add_subcommand("clear", "Remove faults");
    addFolder(*clearing, options->folder);
    addCardNumber(*clearing, options->number)->required(false)->description("Only this card");
    clearing->add_option("--kind", options->kind, "Only this kind of fault")
        ->check(checkKind)
        ->type_name("KIND");
    clearing->callback([options, &out] { clear(*options, out); });

    fault->add_subcommand("kinds", "List the kinds of faults and the options of each")->callback([&out] {
        listKinds(out);
    });
}

}  // namespace cardsim
