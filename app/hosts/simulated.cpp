// The updater on a simulated machine, which is stored in the folder that the command line names.

#include <CLI/CLI.hpp>
#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "app/UpdaterMain.h"
#include "app/hosts/AdministratorPrompt.h"
#include "app/hosts/FailureMessage.h"
#include "app/hosts/HostProcess.h"
#include "app/hosts/UsersMachine.h"
#include "app/hosts/WriteListener.h"
#include "framework/widgets/LWindow.h"
#include "framework/widgets/UDisplay.h"
#include "platform/Host.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/storage/MachineDirectory.h"

namespace {

enum ExitCode {
    kFailed = 1,
    kWrongUsage = 2,
    kPowerWasLost = 3,
    kNoDisplay = 4,
};

void say(const char* what) {
    std::fprintf(stderr, "vupdater-simulated: %s\n", what);
}

// Ends the process at once, as a loss of power does.
[[noreturn]] void losePower(simulator::MachineDirectory& directory) {
    say("The machine has lost its power.");
    try {
        directory.save();
    } catch (const std::exception& error) {
        say(error.what());
    }
    std::_Exit(kPowerWasLost);
}

// Reports errors here, because the machine must be saved even after one.
int runUpdater(simulator::Machine& machine) {
    WriteListener listener([&machine] { machine.preventSleep(); }, [&machine] { machine.allowSleep(); });
    try {
        return UpdaterMain({.windowStateListener = &listener, .mayBeOffered = {}});
    } catch (const std::exception& error) {
        say(error.what());
        return kFailed;
    }
}

// Sets the names by which the desktop knows the program and its window.
void introduce(const std::filesystem::path& folder) {
    QCoreApplication::setApplicationName("vupdater-simulated");
    QGuiApplication::setDesktopFileName("com.vornlabs.vupdater.simulated");
    // A path such as "." gets the name of the folder that it leads to.
    std::error_code ignored;
    const std::filesystem::path whole = std::filesystem::canonical(folder, ignored);
    LWindow::UseTitle("Simulated machine \"" + QString::fromStdString(whole.filename()).simplified() + '"');
}

int runOn(const std::filesystem::path& folder) {
    const auto directory =
        simulator::MachineDirectory::open(folder, simulator::MachineDirectory::OnOpening::powerUp);
    introduce(folder);
    directory->machine().beginRecordings();
    // Programs that look at the machine after this process has been killed must see that it is on.
    directory->save();
    directory->machine().onPowerLost([&directory] { losePower(*directory); });
    int exitCode = 0;
    {
        simulator::SimulatedHost host(directory->machine(), BundleBesideExecutable(), AskAdministrator);
        InstallHost(&host);
        exitCode = runUpdater(directory->machine());
        host.programEnded();
        InstallHost(nullptr);
    }
    directory->save();
    directory->machine().endRecordings();
    return exitCode;
}

// An unexpected word is reported before a missing one, because it may be that one, mistyped.
std::string whatIsWrong(const std::vector<std::string>& rest, const CLI::Error& error) {
    for (const std::string& word : rest) {
        if (word.size() > 1 && word.front() == '-') {
            return "Unknown option " + word.substr(0, word.find('=')) + '.';
        }
    }
    return rest.empty() ? error.what() : "Unexpected argument \"" + rest.front() + "\".";
}

}  // namespace

int main(int argc, char** argv) {
    SetUpProcess();
    try {
        CLI::App arguments("Updates the firmware of the cards in a simulated machine.", "vupdater-simulated");
        std::string folder;
        arguments.add_option("machine", folder, "The machine's folder, as cardsim makes it")
            ->check([](const std::string& name) {
                return name.empty() ? "The folder name must not be empty." : "";
            });
        arguments.set_version_flag("--version", "vupdater-simulated " VUPDATER_VERSION,
                                   "Print the version and exit");
        arguments.footer(
            "Without a folder it opens the machine in ~/.local/share/vupdater/machine, or\n"
            "in the folder that XDG_DATA_HOME names instead of ~/.local/share, and makes it\n"
            "if there is none.\n\n"
            "Exits with 1 if the machine cannot be opened or saved, with 2 if the command\n"
            "line is wrong, with 3 if the machine loses its power, with 4 if there is no\n"
            "display, with 5 if the display or the session ends while it runs, or had to be\n"
            "given up for a write because it froze, and with 0 otherwise.");
        arguments.failure_message([](const CLI::App* program, const CLI::Error& error) {
            return "vupdater-simulated: " + whatIsWrong(program->remaining(), error) +
                   "\nFor help: vupdater-simulated --help\n";
        });
        try {
            arguments.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            const int exitCode = arguments.exit(error) == 0 ? 0 : kWrongUsage;
            if (!std::cout.flush()) {
                say("The output could not be written completely.");
                return kFailed;
            }
            return exitCode;
        }
        UDisplay::Open("vupdater-simulated", kNoDisplay);
        return runOn(folder.empty() ? UsersMachine() : std::filesystem::path(folder));
    } catch (const std::exception& error) {
        say(error.what());
        ShowFailure(error.what());
        return kFailed;
    }
}
