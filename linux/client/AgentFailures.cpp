#include "linux/client/AgentFailures.h"

namespace client {

std::string whyTheAgentIsSilent() {
    return "The agent that opens this computer's cards does not answer. Run as root: systemctl restart "
           "vupdater-agent. If that does not help, restart the computer. Then start VUpdater again.";
}

std::string whyNoBus(int result) {
    return "The system bus cannot be reached (" + bus::Error().reason(result) +
           "). The cards cannot be used without it. Start the computer's D-Bus service.";
}

std::string whyTheAgentFails(const bus::Error& error, int result) {
    if (error.is("org.freedesktop.DBus.Error.ServiceUnknown")) {
        return "The agent that opens this computer's cards is not installed. Install VUpdater completely.";
    }
    return "The agent did not open this computer's cards: " + error.reason(result) +
           ". Start VUpdater again. If that does not help, an administrator can see the agent's "
           "messages with: journalctl --unit vupdater-agent";
}

}  // namespace client
