// The updater on a simulated machine: the one in the folder that the command line names, or the user's own.

#include <QGuiApplication>
#include <exception>
#include <filesystem>
#include <string>

#include "app/UpdaterMain.h"
#include "app/hosts/AdministratorPrompt.h"
#include "app/hosts/CommandLine.h"
#include "app/hosts/HostProcess.h"
#include "app/hosts/UsersMachine.h"
#include "app/hosts/WriteListener.h"
#include "framework/widgets/UDisplay.h"
#include "platform/Host.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/storage/MachineDirectory.h"
#include "simulator/storage/PowerLoss.h"

namespace {

constexpr char kProgram[] = "vupdater-simulated";

void say(const char* what) {
    Say(kProgram, what);
}

// Reports errors here, because the machine must be saved even after one.
int runUpdater(simulator::Machine& machine, const std::string& title) {
    WriteListener listener([&machine] { machine.preventSleep(); }, [&machine] { machine.allowSleep(); });
    try {
        return UpdaterMain({.windowTitle = title,
                            .windowStateListener = &listener,
                            .loadTime = {},
                            .mayBeOffered = {},
                            .mayBeWritten = {}});
    } catch (const std::exception& error) {
        say(error.what());
        return kFailed;
    }
}

std::string titleFor(const std::filesystem::path& folder) {
    // A path such as "." gets the name of the folder that it leads to.
    std::error_code ignored;
    const std::filesystem::path whole = std::filesystem::canonical(folder, ignored);
    const QString name = QString::fromStdString(whole.filename()).simplified();
    return "Simulated machine \"" + name.toStdString() + '"';
}

// Sets the names by which the desktop knows the program.
void introduce() {
    QCoreApplication::setApplicationName(kProgram);
    QGuiApplication::setDesktopFileName("com.vornlabs.vupdater.simulated");
}

int runOn(const std::filesystem::path& folder, const std::string& title) {
    const auto directory =
        simulator::MachineDirectory::open(folder, simulator::MachineDirectory::OnOpening::powerUp);
    introduce();
    directory->machine().beginRecordings();
    // Programs that look at the machine after this process has been killed must see that it is on.
    directory->save();
    simulator::endProcessOnPowerLoss(*directory, say);
    int exitCode = 0;
    {
        simulator::SimulatedHost host(directory->machine(), BundleBesideExecutable(), AskAdministrator);
        InstallHost(&host);
        exitCode = runUpdater(directory->machine(), title);
        host.programEnded();
        InstallHost(nullptr);
    }
    directory->save();
    directory->machine().endRecordings();
    return exitCode;
}

void addArguments(CLI::App& commandLine, std::string& folder) {
    commandLine.add_option("machine", folder, "The machine's folder, as cardsim makes it")
        ->check(
            [](const std::string& name) { return name.empty() ? "The folder name must not be empty." : ""; });
    commandLine.footer(
        "Without a folder it opens the machine in ~/.local/share/vupdater/machine, or\n"
        "in the folder that XDG_DATA_HOME names instead of ~/.local/share, and makes it\n"
        "if there is none.\n\n"
        "Exits with 1 if the machine cannot be opened or saved, with 2 if the command\n"
        "line is wrong, with 3 if the machine loses its power, with 4 if there is no\n"
        "display, with 5 if the display or the session ends or a frozen display is given\n"
        "up during a write, and with 0 otherwise.");
}

}  // namespace

int main(int argc, char** argv) {
    std::string folder;
    return RunProgram(
        {.name = kProgram,
         .description = "Updates the firmware of the cards in a simulated machine.",
         .addArguments = [&folder](CLI::App& commandLine) { addArguments(commandLine, folder); },
         .run =
             [&folder] {
                 return folder.empty() ? runOn(UsersMachine(), "Your simulated machine")
                                       : runOn(folder, titleFor(folder));
             }},
        argc, argv);
}
