// The updater on this computer's own cards.

#include <QGuiApplication>
#include <algorithm>
#include <optional>
#include <vector>

#include "app/UpdaterMain.h"
#include "app/hosts/CommandLine.h"
#include "app/hosts/HostProcess.h"
#include "app/hosts/OfferedImages.h"
#include "app/hosts/WriteListener.h"
#include "framework/widgets/LApplication.h"
#include "framework/widgets/LWindow.h"
#include "linux/client/AgentClient.h"
#include "linux/host/LinuxHost.h"
#include "platform/Host.h"

namespace {

constexpr char kProgram[] = "vupdater";

// Whoever waits inside the program lets the window draw, and a request to quit arrive. False after a quit.
bool goOn() {
    LApplication* const application = LApplication::Current();
    if (application != nullptr) {
        application->DrawInPassing();
    }
    return application == nullptr || !application->IsQuitting();
}

// The agent, for the cards of the kind that there are when the program starts, which decides what may be
// written into them. Should a card of the other kind appear later, it is refused.
class AgentForOneKind final : public AgentClient {
  public:
    AgentForOneKind() : AgentClient(goOn) {
        const auto atStart = AgentClient::cards().value_or(std::vector<Card>());
        mAreSimulated = std::ranges::any_of(
            atStart, [](const Card& card) { return card.isSimulated && card.refusal.empty(); });
    }

    CardsOfComputer Kind() const {
        return mAreSimulated ? CardsOfComputer::kSimulated : CardsOfComputer::kReal;
    }

    std::optional<std::vector<Card>> cards() override {
        auto all = AgentClient::cards();
        if (!all) {
            return all;
        }
        for (Card& card : *all) {
            if (card.isSimulated != mAreSimulated && card.refusal.empty()) {
                card.refusal = "It was not there when the program started. Start the program again.";
            }
        }
        return all;
    }

  private:
    bool mAreSimulated = false;
};

// Sets the names by which the desktop knows the program and its window.
void introduce(CardsOfComputer cards) {
    QCoreApplication::setApplicationName(kProgram);
    QGuiApplication::setDesktopFileName("com.vornlabs.vupdater");
    if (cards == CardsOfComputer::kSimulated) {
        LWindow::UseTitle("Simulated cards");
    }
}

int runUpdater() {
    AgentForOneKind agent;
    introduce(agent.Kind());
    LinuxHost host(agent, BundleBesideExecutable(), [] { static_cast<void>(goOn()); });
    WriteListener listener([&agent] { agent.beginWrite(); }, [&agent] { agent.endWrite(); });
    InstallHost(&host);
    const int exitCode =
        UpdaterMain({.windowStateListener = &listener, .mayBeOffered = OfferedImages(agent.Kind())});
    InstallHost(nullptr);
    return exitCode;
}

void addArguments(CLI::App& commandLine) {
    commandLine.footer(
        "The cards are named in /etc/vupdater/cards.d, and an administrator's password\n"
        "is asked for before they are used.\n\n"
        "Exits with 1 after an error that it did not expect, with 2 if the command line\n"
        "is wrong, with 4 if there is no display, with 5 if the display or the session\n"
        "ends while it runs, or had to be given up for a write because it froze, and\n"
        "with 0 otherwise.");
}

}  // namespace

int main(int argc, char** argv) {
    return RunProgram({.name = kProgram,
                       .description = "Updates the firmware of this computer's cards.",
                       .addArguments = addArguments,
                       .run = runUpdater},
                      argc, argv);
}
