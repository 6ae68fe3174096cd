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

// The agent, for the cards of the kind that there are when the program starts, which decides what may be
// written into them. Should a card of the other kind appear later, it is refused.
class AgentForOneKind final : public AgentClient {
  public:
    AgentForOneKind() {
        const auto atStart = AgentClient::cards().value_or(std::vector<Card>());
        const bool areSimulated = std::ranges::any_of(
            atStart, [](const Card& card) { return card.isSimulated && card.refusal.empty(); });
        kind_ = areSimulated ? CardsOfComputer::kSimulated : CardsOfComputer::kReal;
    }

    CardsOfComputer kind() const { return kind_; }

    std::optional<std::vector<Card>> cards() override {
        auto all = AgentClient::cards();
        for (Card& card : all ? *all : none_) {
            if (card.isSimulated != (kind_ == CardsOfComputer::kSimulated) && card.refusal.empty()) {
                card.refusal = "It was configured while the program was running. Start the program again.";
            }
        }
        return all;
    }

  private:
    CardsOfComputer kind_;
    std::vector<Card> none_;
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
    introduce(agent.kind());
    LinuxHost host(agent, BundleBesideExecutable(), [] {
        if (LApplication* const application = LApplication::Current()) {
            application->DrawInPassing();
        }
    });
    WriteListener listener([&agent] { agent.beginWrite(); }, [&agent] { agent.endWrite(); });
    InstallHost(&host);
    const int exitCode =
        UpdaterMain({.windowStateListener = &listener, .mayBeOffered = OfferedImages(agent.kind())});
    InstallHost(nullptr);
    return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App arguments("Updates the firmware of this computer's cards.", kProgram);
    arguments.footer(
        "The cards are named in /etc/vupdater/cards.d, and an administrator's password\n"
        "is asked for before they are used.\n\n"
        "Exits with 1 after an error that it did not expect, with 2 if the command line\n"
        "is wrong, with 4 if there is no display, with 5 if the display or the session\n"
        "ends while it runs, or had to be given up for a write because it froze, and\n"
        "with 0 otherwise.");
    return RunProgram(arguments, argc, argv, runUpdater);
}
