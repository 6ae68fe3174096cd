#pragma once

// Whether the agent is still there while its answer is waited for, which may take as long as somebody takes
// to enter a password: an agent that asks polkit answers other calls meanwhile.

#include <systemd/sd-bus.h>

#include <chrono>

#include "linux/bus/Bus.h"

namespace client {

class AgentPulse {
  public:
    // The connection must outlive this object.
    explicit AgentPulse(sd_bus* connection) : connection_(connection) {}
    AgentPulse(const AgentPulse&) = delete;
    AgentPulse& operator=(const AgentPulse&) = delete;

    // To be called about every 100 ms while the connection is processed. Asks the agent about every second.
    // As long as the bus has yet to start it, the bus answers for it.
    void look();
    // Whether there has been no answer for five seconds of looking.
    bool hasStopped() const { return silence_ >= kLongestSilence; }

  private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kLongestSilence{5};

    static int onAnswer(sd_bus_message* answer, void* pulse, sd_bus_error* error);

    sd_bus* connection_;
    bus::Slot question_;
    bool isAnswered_ = true;
    Clock::time_point lastQuestion_;
    Clock::time_point lastLook_ = Clock::now();
    Clock::duration silence_{};
};

}  // namespace client
