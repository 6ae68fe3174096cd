#pragma once

// The connection to the agent over the system bus.
//
// An agent or a bus that does not answer when cards are listed or claimed is given up: from then on calls
// fail at once, so that nothing is waited for again. Somebody who takes long to enter a password is no
// reason, for the agent answers meanwhile.

#include <chrono>
#include <functional>
#include <string>

#include "linux/bus/AgentInterface.h"
#include "linux/bus/Bus.h"

namespace client {

class AgentConnection {
  public:
    // Of one call. A bus or an agent that hangs must not hold a write.
    static constexpr std::chrono::microseconds kLimit = std::chrono::seconds(5);

    // The system bus, connected to when it is first needed and again after it has ended the connection; null,
    // with the reason, if that fails within the limit.
    sd_bus* systemBus(std::chrono::microseconds limit, int& result);
    // Null if there is no connection.
    sd_bus* systemBusIfConnected() const { return connection_.get(); }
    // The agent takes this as the client's end: it takes the cards back once they are no longer mapped, and
    // withdraws its questions.
    void close() { connection_.reset(); }

    // A call of the agent. Null, with the reason in `answer`, if there is no connection within the limit or
    // the agent was given up.
    bus::Message newCall(const bus::Method& method, bus::Answer& answer,
                         std::chrono::microseconds limit = kLimit);
    // Makes a call that may have to start the agent, and gives the agent up if it is silent. `mayWait` is
    // asked about every 100 ms; if it says no, the result is -ECANCELED.
    void callAndStartAgent(const bus::Message& call, std::chrono::microseconds limit, bus::Answer& answer,
                           const std::function<bool()>& mayWait = {});

    // Why a call brought no answer, and what to do about it.
    std::string whyItFailed(const bus::Answer& answer) const;

  private:
    bus::Connection connection_;
    std::string whyGivenUp_;  // empty if the agent was not given up
};

// Makes a call that means something only to an agent that knows this program, so it does not start another.
void callRunningAgent(const bus::Message& call, std::chrono::microseconds limit, bus::Answer& answer,
                      const std::function<bool()>& mayWait = {});

}  // namespace client
