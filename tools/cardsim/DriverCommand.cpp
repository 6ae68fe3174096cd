#include "tools/cardsim/DriverCommand.h"

#include <algorithm>
#include <map>
#include <optional>

#include "files/PrintableText.h"
#include "simulator/base/MachineError.h"
#include "tools/command_line/CommandLine.h"

namespace cardsim {
namespace {

using simulator::Drivers;
using simulator::MachineError;
using simulator::PrivateDriverFault;

struct DriverOptions {
    std::string folder;
    std::optional<bool> isResident;
    std::optional<bool> refusesAdministrator;
    std::optional<PrivateDriverFault> privateDriver;
};

const std::map<std::string, bool> kResidence{{"yes", true}, {"no", false}};
const std::map<std::string, bool> kAdministrator{{"ask", false}, {"refuse", true}};
const std::map<std::string, PrivateDriverFault> kPrivateDriver{
    {"works", PrivateDriverFault::none},
    {"does-not-load", PrivateDriverFault::doesNotLoad},
    {"publishes-nothing", PrivateDriverFault::publishesNothing}};

template <typename Value>
std::string wordFor(Value value, const std::map<std::string, Value>& words) {
    return std::ranges::find(words, value, [](const auto& word) { return word.second; })->first;
}

void changeDrivers(const DriverOptions& options, std::ostream& out) {
    if (!options.isResident && !options.refusesAdministrator && !options.privateDriver) {
        tools::refuseUsage("Nothing to change: give at least one option.");
    }
    const auto directory = openMachine(options.folder);
    Drivers& drivers = directory->machine().drivers();
    if (options.isResident && *options.isResident != drivers.resident && directory->machine().isOn())
        throw MachineError(
            "The machine is on; switch it off with \"cardsim power-off\" before its resident driver comes or "
            "goes.");
    drivers.resident = options.isResident.value_or(drivers.resident);
    drivers.refusesAdministrator = options.refusesAdministrator.value_or(drivers.refusesAdministrator);
    drivers.privateDriverFault = options.privateDriver.value_or(drivers.privateDriverFault);
    directory->save();
    out << "Driver: " << describe(drivers) << ".\n";
}

template <typename Value>
void addChoice(CLI::App& command, const char* name, std::optional<Value>& into,
               const std::map<std::string, Value>& choices, const char* description) {
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

std::string describe(const Drivers& drivers) {
    std::string text = drivers.resident ? "resident" : "";
    for (const auto& [identifier, driver] : drivers.loaded)
        text += (text.empty() ? "" : ", ") + files::printable(identifier) + " loaded";
    if (text.empty())
        text = "none";
    if (drivers.refusesAdministrator)
        text += "; administrator refused";
    if (drivers.privateDriverFault == PrivateDriverFault::doesNotLoad)
        text += "; private driver: does not load";
    if (drivers.privateDriverFault == PrivateDriverFault::publishesNothing)
        text += "; private driver: publishes nothing";
    return text;
}

nlohmann::ordered_json jsonOf(const Drivers& drivers) {
    auto loaded = nlohmann::ordered_json::array();
    for (const auto& [identifier, driver] : drivers.loaded) {
        loaded.push_back(identifier);
    }
    return {{"resident", drivers.resident},
            {"loaded", std::move(loaded)},
            {"administrator", wordFor(drivers.refusesAdministrator, kAdministrator)},
            {"privateDriver", wordFor(drivers.privateDriverFault, kPrivateDriver)}};
}

void addDriverCommand(CLI::App& program, std::ostream& out) {
    const auto options = std::make_shared<DriverOptions>();
    CLI::App* const command =
        program.add_subcommand("driver", "Change which driver a machine has, or break the updater's own");
    addFolder(*command, options->folder);
    addChoice(*command, "--resident", options->isResident, kResidence,
              "Whether a driver is installed that shows the cards");
    addChoice(*command, "--administrator", options->refusesAdministrator, kAdministrator,
              "What happens when a program wants the administrator's right");
    addChoice(*command, "--private-driver", options->privateDriver, kPrivateDriver,
              "What a driver does that the updater loads");
    command->callback([options, &out] { changeDrivers(*options, out); });
}

}  // namespace cardsim
