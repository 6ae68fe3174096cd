#include "tools/cardsim/CardSim.h"

#include <CLI/CLI.hpp>
#include <ostream>

#include "images/prom/ContentText.h"
#include "simulator/machine/DefaultMachine.h"
#include "simulator/storage/MachineDirectory.h"
#include "tools/cardsim/CardCommands.h"
#include "tools/cardsim/DriverCommand.h"
#include "tools/cardsim/FaultCommands.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/cardsim/PromCommands.h"
#include "tools/cardsim/RecordCommand.h"
#include "tools/cardsim/ShowMachine.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/JsonText.h"

namespace cardsim {
namespace {

using simulator::MachineDirectory;

void makeMachine(const std::string& folder, bool withoutDriver, std::ostream& out) {
    const auto directory = MachineDirectory::create(folder);
    directory->machine().drivers().resident = !withoutDriver;
    simulator::addDefaultCards(directory->machine());
    directory->save();
    out << "Made a machine with " << directory->machine().cardCount() << " cards"
        << (withoutDriver ? " and no driver" : "") << " in " << folder << ". It is off.\n";
}

void show(const std::string& folder, bool asJson, std::ostream& out) {
    const auto directory = viewMachine(folder);
    if (asJson) {
        tools::writeJson(machineJson(directory->machine(), directory->isInUse()), out);
        return;
    }
    if (directory->isInUse()) {
        out << "In use      by another program; this is what it saved last, and the PROMs as they are\n";
    }
    showMachine(directory->machine(), out);
}

void powerOff(const std::string& folder, std::ostream& out) {
    const auto directory = openMachine(folder);
    directory->machine().powerOff();
    directory->save();
    out << "The machine is off.\n";
}

// A machine that is on stays as it is.
void powerOn(MachineDirectory& directory, std::ostream& out) {
    simulator::Machine& machine = directory.machine();
    if (!machine.isOn()) {
        machine.powerOn();
    }
    directory.save();
    if (!machine.isOn()) {
        out << "The machine lost its power and is off.\n";
    }
    for (std::size_t index = 0; index < machine.cardCount(); ++index) {
        out << nameOf(machine.card(index)) << ": " << images::contentText(machine.card(index).running())
            << '\n';
    }
}

void powerCycle(const std::string& folder, std::ostream& out) {
    const auto directory = openMachine(folder);
    directory->machine().powerOff();
    powerOn(*directory, out);
}

}  // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    CLI::App app{"Makes, shows, changes, breaks and power-cycles simulated machines.", "cardsim"};
    std::string folder;
    const auto add = [&](const char* name, const char* description, const auto& command) {
        CLI::App* const subcommand = app.add_subcommand(name, description);
        addFolder(*subcommand, folder);
        subcommand->callback([&folder, &out, command] { command(folder, out); });
        return subcommand;
    };
    bool withoutDriver = false;
    add("make", "Make the default machine in a new or empty folder",
        [&](const std::string& into, std::ostream& to) { makeMachine(into, withoutDriver, to); })
        ->add_flag("--without-driver", withoutDriver,
                   "No resident driver: the updater has to load its own to see the cards");
    bool asJson = false;
    add("show", "Show a machine's cards, power and ledger; changes nothing",
        [&](const std::string& of, std::ostream& to) { show(of, asJson, to); })
        ->add_flag(
            "--json", asJson,
            "Print an object: on, inUse, accesses, microseconds, driver, cards and ledger; what is not there "
            "is null");
    add("power-cycle", "Switch a machine off and on, so that its cards load their firmware", powerCycle);
    add("power-on", "Switch a machine on, so that its cards load their firmware",
        [](const std::string& of, std::ostream& to) { powerOn(*openMachine(of), to); });
    add("power-off", "Switch a machine off", powerOff);
    addCardCommands(app, out);
    addFaultCommands(app, out);
    addDriverCommand(app, out);
    addPromCommands(app, out);
    addRecordCommand(app, out);

    return tools::runCommandLine(app, arguments, out, err);
}

}  // namespace cardsim
