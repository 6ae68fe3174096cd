#include "linux/client/AgentConnection.h"

#include <cerrno>

#include "linux/client/AgentFailures.h"
#include "linux/client/AgentPulse.h"

namespace client {

sd_bus* AgentConnection::systemBus(std::chrono::microseconds limit, int& result) {
    if (!connection_ || sd_bus_is_open(connection_.get()) <= 0) {
        connection_ = bus::openSystemBus(limit, result);
    }
    return connection_.get();
}

bus::Message AgentConnection::newCall(const bus::Method& method, bus::Answer& answer,
                                      std::chrono::microseconds limit) {
    if (!whyGivenUp_.empty()) {
        answer.result = -ETIMEDOUT;
        return nullptr;
    }
    return bus::newCall(systemBus(limit, answer.result), bus::kAgent, method.name);
}

void AgentConnection::callAndStartAgent(const bus::Message& call, std::chrono::microseconds limit,
                                        bus::Answer& answer, const std::function<bool()>& mayWait) {
    bool isSilent = false;
    {
        AgentPulse pulse(connection_.get());
        bus::makeCall(call, limit, answer, [&] {
            pulse.look();
            isSilent = pulse.hasStopped();
            return !isSilent && (!mayWait || mayWait());
        });
    }
    const bool isTimeUp = answer.result == -ETIMEDOUT && !answer.error.isSet();
    if (!whyGivenUp_.empty() || !(isTimeUp || isSilent)) {
        return;
    }
    // An agent that is not silent may be waiting for polkit, or has yet to start.
    if (isSilent || !connection_) {
        answer.result = -ETIMEDOUT;
        whyGivenUp_ = connection_ ? whyTheAgentIsSilent() : whyNoBus(answer.result);
    }
    // So that the agent asks nobody for a password if it goes on later.
    close();
}

std::string AgentConnection::whyItFailed(const bus::Answer& answer) const {
    if (!whyGivenUp_.empty()) {
        return whyGivenUp_;
    }
    return connection_ ? whyTheAgentFails(answer.error, answer.result) : whyNoBus(answer.result);
}

void callRunningAgent(const bus::Message& call, std::chrono::microseconds limit, bus::Answer& answer,
                      const std::function<bool()>& mayWait) {
    sd_bus_message_set_auto_start(call.get(), 0);
    bus::makeCall(call, limit, answer, mayWait);
}

}  // namespace client
