#pragma once

// The agent on the system bus (linux/bus/AgentInterface.h): answers its clients, and undoes what it did for a
// client that has gone.

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <chrono>
#include <map>
#include <memory>
#include <string>

#include "linux/agent/CardKeeper.h"
#include "linux/agent/Question.h"
#include "linux/agent/WriteLock.h"
#include "linux/bus/AgentInterface.h"
#include "linux/bus/Bus.h"

class Agent {
  public:
    // The loop, the connection, which the loop serves, and the keeper must outlive the agent. The loop exits
    // after the idle time without clients.
    Agent(sd_event* loop, sd_bus* connection, CardKeeper& keeper, std::chrono::seconds idleTime);
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;
    ~Agent();

    // Takes the agent's name on the bus. Throws files::UserError.
    void start();

  private:
    struct Client {
        uid_t user;
        std::unique_ptr<Question> question;  // while it is open
        std::unique_ptr<WriteLock> lock;     // while a write is on
    };
    using Member = void (Agent::*)(sd_bus_message*);

    static const sd_bus_vtable kMethods[];
    template <Member method>
    static int handle(sd_bus_message* call, void* agent, sd_bus_error* error);
    template <Member method>
    static constexpr sd_bus_vtable entry(const bus::Method& known);
    static int onNameLost(sd_bus_message* signal, void* agent, sd_bus_error* error);
    static int onTimer(sd_event_source* timer, uint64_t time, void* agent);

    void cards(sd_bus_message* call);
    void claim(sd_bus_message* call);
    void openRange(sd_bus_message* call);
    void beginWrite(sd_bus_message* call);
    void endWrite(sd_bus_message* call);
    void letGo(sd_bus_message* call);

    void ask(sd_bus_message* call, bool mayAsk);
    void answerClaim(sd_bus_message* call, std::optional<bus::ClaimAnswer> answer, const std::string& reason);
    void forget(const std::string& client);
    // Takes back what it can, and sets when to try again, or to exit because nobody needs the agent.
    void setTimer();
    void exitWhenIdle();

    sd_event* loop_;
    sd_bus* connection_;
    CardKeeper& keeper_;
    std::chrono::seconds idleTime_;
    std::map<std::string, Client> clients_;  // by their names on the bus
    bool isTakingBack_ = false;
    bool isExiting_ = false;
    bus::Slot object_;
    bus::Slot nameLost_;
    sd_event_source* timer_ = nullptr;
};
