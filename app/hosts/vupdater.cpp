// The updater on this computer's own cards.

#include <QGuiApplication>
#include <algorithm>
#include <optional>
#include <vector>

#include "app/UpdaterMain.h"
#include "app/hosts/CommandLine.h"
#include "app/hosts/FailureMessage.h"
#include "app/hosts/HostProcess.h"
#include "app/hosts/OfferedImages.h"
#include "app/hosts/WriteListener.h"
#include "framework/widgets/LApplication.h"
#include "linux/client/AgentClient.h"
#include "linux/host/LinuxHost.h"
#include "linux/pci/base/Refusals.h"
#include "platform/Host.h"

namespace {

constexpr char kProgram[] = "vupdater";

// Called during waits: lets the window draw and a request to quit arrive. Returns false after a quit.
bool goOn() {
    LApplication* const application = LApplication::Current();
    if (application != nullptr) {
        application->DrawInPassing();
    }
    return application == nullptr || !application->IsQuitting();
}

// The agent, for real or for simulated cards only, whichever are there when the program starts, because the
// kind decides which images are offered. A card of the other kind that appears later is refused, and so are
// all cards if it is not known which were there.
class AgentForOneKind final : public client::AgentClient {
  public:
    AgentForOneKind() : AgentClient(goOn) {
        if (const auto atStart = AgentClient::cards()) {
            mAreSimulated = std::ranges::any_of(
                *atStart, [](const pci::FoundCard& card) { return card.isSimulated && card.isUsable(); });
        }
    }

    CardsOfComputer Kind() const {
        return mAreSimulated.value_or(false) ? CardsOfComputer::kSimulated : CardsOfComputer::kReal;
    }

    std::optional<std::vector<pci::FoundCard>> cards() override {
        auto all = AgentClient::cards();
        if (!all) {
            return all;
        }
        for (pci::FoundCard& card : *all) {
            if (mAreSimulated != card.isSimulated && card.isUsable()) {
                card.refusal = pci::refusals::kAppearedLater;
            }
        }
        return all;
    }

    bool powerOff() override {
        mIsStillOn = !AgentClient::powerOff();
        return !mIsStillOn;
    }
    // The user has shut the computer down, and it refused.
    bool IsStillOn() const { return mIsStillOn; }

  private:
    bool mIsStillOn = false;
    std::optional<bool> mAreSimulated;  // nothing if nobody has said which cards there are
};

// Sets the names by which the desktop knows the program.
void introduce() {
    QCoreApplication::setApplicationName(kProgram);
    QGuiApplication::setDesktopFileName("com.vornlabs.vupdater");
}

int runUpdater() {
    AgentForOneKind agent;
    introduce();
    host::LinuxHost host(agent, BundleBesideExecutable(), [] { static_cast<void>(goOn()); });
    WriteListener listener([&agent] { agent.beginWrite(); }, [&agent] { agent.endWrite(); });
    InstallHost(&host);
    const int exitCode =
        UpdaterMain({.windowTitle = agent.Kind() == CardsOfComputer::kSimulated ? "Simulated cards" : "",
                     .windowStateListener = &listener,
                     .loadTime = [&host] { return host.loadTime(); },
                     .mayBeOffered = OfferedImages(agent.Kind()),
                     .mayBeWritten = WrittenImages(agent.Kind())});
    InstallHost(nullptr);
    if (agent.IsStillOn()) {
        ShowFailure("The computer was not switched off. Shut it down from the desktop's menu.");
    }
    return exitCode;
}

void addArguments(CLI::App& commandLine) {
    commandLine.footer(
        "An administrator names the cards in /etc/vupdater/cards.d. The program asks for\n"
        "an administrator's password before it uses them.\n\n"
        "Exits with 1 if an unexpected error occurs, with 2 if the command line is wrong,\n"
        "with 4 if there is no display, with 5 if the display or the session ends or a\n"
        "frozen display is given up during a write, and with 0 otherwise.");
}

}  // namespace

int main(int argc, char** argv) {
    return RunProgram({.name = kProgram,
                       .description = "Updates the firmware of this computer's cards.",
                       .addArguments = addArguments,
                       .run = runUpdater},
                      argc, argv);
}
