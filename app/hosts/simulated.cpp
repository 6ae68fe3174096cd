// The updater on a simulated machine, which lives in the folder that the command line names.

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "app/UpdaterMain.h"
#include "app/hosts/AdministratorPrompt.h"
#include "platform/ExecutableBundle.h"
#include "platform/Host.h"
#include "simulator/MachineDirectory.h"
#include "simulator/SimulatedHost.h"

namespace {

constexpr int kPowerWasLost = 3;

int runOn(const std::string& folder) {
    const auto directory =
        simulator::MachineDirectory::open(folder, simulator::MachineDirectory::OnOpening::powerUp);
    directory->machine().beginRecordings();
    // From here on the machine is on, also for whoever looks after this process has been killed.
    directory->save();
    directory->machine().onPowerLost([&directory] {
        std::fputs("vupdater-simulated: The machine has lost its power.\n", stderr);
        directory->save();
        std::_Exit(kPowerWasLost);
    });
    int exitCode = 0;
    {
        simulator::SimulatedHost host(directory->machine(), BundleBesideExecutable(), AskAdministrator);
        InstallHost(&host);
        exitCode = UpdaterMain();
        host.programEnded();
        InstallHost(nullptr);
    }
    directory->save();
    directory->machine().endRecordings();
    return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
    // A write beyond a limit on files is to fail, and not to end the program in its midst.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        CLI::App arguments("Updates the firmware of the cards in a simulated machine.");
        std::string folder;
        arguments.add_option("machine", folder, "The machine's folder, as cardsim makes it")->required();
        arguments.footer(
            "Ends with 1 when the machine cannot be opened or saved, with 2 when the command line is "
            "wrong, with 3 when the machine loses its power, and with 0 otherwise.");
        arguments.failure_message([](const CLI::App*, const CLI::Error& error) {
            return std::string("vupdater-simulated: ") + error.what() +
                   "\nFor help: vupdater-simulated --help\n";
        });
        try {
            arguments.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return arguments.exit(error) == 0 ? 0 : 2;
        }
        return runOn(folder);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vupdater-simulated: %s\n", error.what());
        return 1;
    }
}
