#pragma once

// One question to polkit: may a client use the cards? The administrator's rules and the defaults in
// share/agent/ say who may, and whose password is needed.

#include <systemd/sd-bus.h>

#include <functional>
#include <optional>
#include <string>

#include "linux/agent/PolkitPulse.h"
#include "linux/bus/AgentInterface.h"
#include "linux/bus/Bus.h"

namespace agent {

class Question {
  public:
    // Asks whether the client with this name on the bus may use the cards. With mayAsk the user may be asked
    // for a password, and may take any time to enter it, but a polkit that hangs is given up. `done` is
    // called once, with the answer, or with nothing and the reason why there is none; it may destroy the
    // question.
    using Done = std::function<void(std::optional<bus::ClaimAnswer> answer, const std::string& reason)>;
    Question(sd_bus* connection, const std::string& client, bool mayAsk, Done done);
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;
    // Withdraws the question if it has not been answered, so that no dialog is left on the screen.
    ~Question();

  private:
    // sd-bus calls this with polkit's answer.
    static int onAnswer(sd_bus_message* answer, void* question, sd_bus_error* error);
    void withdraw();
    void giveUp();

    sd_bus* connection_;
    std::string id_;  // by which polkit can be told to withdraw the question
    Done done_;
    bus::Slot pending_;
    std::optional<PolkitPulse> pulse_;  // until the question has been answered
};

}  // namespace agent
