#include <memory>
#include <ostream>

#include "images/prom/ContentText.h"
#include "simulator/machine/DefaultMachine.h"
#include "tools/cardsim/Commands.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/cardsim/MachineText.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"

namespace cardsim {
namespace {

using simulator::MachineDirectory;

struct MachineOptions {
    std::string folder;
    bool withoutDriver = false;
    bool asJson = false;
};

void make(const MachineOptions& options, std::ostream& out) {
    const auto directory = MachineDirectory::create(options.folder);
    directory->machine().drivers().resident = !options.withoutDriver;
    simulator::addDefaultCards(directory->machine());
    directory->save();
    out << "Made a machine with " << directory->machine().cardCount() << " cards"
        << (options.withoutDriver ? " and no driver" : "") << " in " << options.folder << ". It is off.\n";
}

void show(const MachineOptions& options, std::ostream& out) {
    const auto directory = viewMachine(options.folder);
    if (options.asJson) {
        tools::writeJson(machineJson(directory->machine(), directory->isInUse()), out);
        return;
    }
    if (directory->isInUse()) {
        out << "In use      by another program; shown as it was last saved, with the PROMs as they are now\n";
    }
    showMachine(directory->machine(), out);
}

void powerOff(const MachineOptions& options, std::ostream& out) {
    const auto directory = openMachine(options.folder);
    directory->machine().powerOff();
    directory->save();
    out << "The machine is off.\n";
}

// A machine that is already on stays as it is.
void switchOn(MachineDirectory& directory, std::ostream& out) {
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

void powerOn(const MachineOptions& options, std::ostream& out) {
    switchOn(*openMachine(options.folder), out);
}

void powerCycle(const MachineOptions& options, std::ostream& out) {
    const auto directory = openMachine(options.folder);
    directory->machine().powerOff();
    switchOn(*directory, out);
}

}  // namespace

void addMachineCommands(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<MachineOptions>();
    const auto add = [&](const char* name, const char* description, const auto& command) {
        CLI::App* const subcommand = program.add_subcommand(name, description);
        addFolder(*subcommand, options->folder);
        subcommand->callback([options, &out, command] { command(*options, out); });
        return subcommand;
    };
    add("make", "Make the default machine in a new or empty folder", make)
        ->add_flag("--without-driver", options->withoutDriver,
                   "No resident driver: the updater must load its own to see the cards");
    add("show", "Show a machine's cards, power and ledger without changing anything", show)
        ->add_flag("--json", options->asJson,
                   "Print a JSON object with on, inUse, accesses, microseconds, driver, cards and ledger; "
                   "null for what is missing");
    add("power-cycle", "Switch a machine off and on again, so that its cards load their firmware",
        powerCycle);
    add("power-on", "Switch a machine on, so that its cards load their firmware", powerOn);
    add("power-off", "Switch a machine off", powerOff);
}

}  // namespace cardsim
