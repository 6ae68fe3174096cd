#include <memory>
#include <optional>
#include <ostream>

#include "files/UserError.h"
#include "tools/cardsim/Commands.h"
#include "tools/cardsim/MachineArguments.h"
#include "tools/cardsim/MachineText.h"
#include "tools/command_line/CommandLine.h"

namespace cardsim {
namespace {

using simulator::Drivers;
using simulator::PrivateDriverFault;

struct DriverOptions {
    std::string folder;
    std::optional<bool> isResident;
    std::optional<bool> refusesAdministrator;
    std::optional<PrivateDriverFault> privateDriver;
};

const Words<bool> kResidentWords{{"yes", true}, {"no", false}};

void changeDrivers(const DriverOptions& options, std::ostream& out) {
    if (!options.isResident && !options.refusesAdministrator && !options.privateDriver) {
        tools::refuseUsage("Nothing to change: give at least one option.");
    }
    const auto directory = openMachine(options.folder);
    Drivers& drivers = directory->machine().drivers();
    if (options.isResident && *options.isResident != drivers.resident && directory->machine().isOn()) {
        throw files::UserError(
            "The resident driver can be changed only while the machine is off; switch it off with \"cardsim "
            "power-off\".");
    }
    drivers.resident = options.isResident.value_or(drivers.resident);
    drivers.refusesAdministrator = options.refusesAdministrator.value_or(drivers.refusesAdministrator);
    drivers.privateDriverFault = options.privateDriver.value_or(drivers.privateDriverFault);
    directory->save();
    out << "Driver: " << describe(drivers) << ".\n";
}

template <typename Value>
void addChoice(CLI::App& command, const char* name, std::optional<Value>& into, const Words<Value>& choices,
               const char* description) {
    std::string names;
    for (const auto& choice : choices) {
        names += (names.empty() ? "" : ", ") + choice.first;
    }
    command
        .add_option_function<std::string>(
            name, [&into, &choices](const std::string& word) { into = choices.at(word); },
            description + std::string(": ") + names)
        ->check([&choices, names](const std::string& word) {
            return choices.contains(word) ? "" : '"' + word + "\" is not one of: " + names + '.';
        })
        ->type_name("WORD");
}

}  // namespace

void addDriverCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<DriverOptions>();
    CLI::App* const command =
        program.add_subcommand("driver", "Change a machine's resident driver, or break the updater's own");
    addFolder(*command, options->folder);
    addChoice(*command, "--resident", options->isResident, kResidentWords,
              "Whether the machine has a driver that shows the cards");
    addChoice(*command, "--administrator", options->refusesAdministrator, kAdministratorWords,
              "What happens when a program asks for administrator rights");
    addChoice(*command, "--private-driver", options->privateDriver, kPrivateDriverWords,
              "What the driver that the updater loads does");
    command->callback([options, &out] { changeDrivers(*options, out); });
}

}  // namespace cardsim
