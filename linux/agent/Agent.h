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
#include "linux/agent/WriteScope.h"
#include "linux/bus/AgentInterface.h"
#include "linux/bus/Bus.h"

namespace agent {

class Agent {
  public:
    // The loop, the connection, which the loop serves, and the keeper must outlive the agent. The loop exits
    // after the idle time without clients.
    Agent(sd_event* loop, sd_bus* connection, CardKeeper& keeper, std::chrono::seconds idleTime);
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;
    // Withdraws open questions and ends the locks. The keeper decides what becomes of the cards.
    ~Agent();

    // Takes the agent's name on the bus; the loop answers the calls. Throws files::UserError if another agent
    // has the name, or the bus does not let this one have it.
    void start();

  private:
    // A program that has claimed the cards, until it is refused them or lets them go.
    struct Client {
        uid_t user;
        std::unique_ptr<Question> question;  // while it is open
        std::unique_ptr<WriteLock> lock;     // during a write
        std::unique_ptr<WriteScope> scope;   // from its first write on
        std::string given;                   // its cards' addresses, as the journal has them
    };
    // Answers a call, at once or later. What it throws is the answer if it fails.
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

    // Puts a claim to polkit, which may take as long as somebody takes to enter a password. Throws
    // files::UserError if too many are waiting.
    void ask(sd_bus_message* call, bool mayAsk);
    // Answers the claim, and gives the client the cards if polkit granted it. Without an answer from polkit,
    // the reason is why there is none.
    void answerClaim(sd_bus_message* call, std::optional<bus::ClaimAnswer> answer, const std::string& reason);
    // Gives the client the cards and answers its claim. Throws files::UserError if the answer cannot be sent.
    void give(sd_bus_message* call);
    // Withdraws the client's question, ends its lock and gives up its cards.
    void forget(const std::string& client);
    // Takes back what it can, and sets when to try again, or to exit because nobody needs the agent.
    void setTimer();
    // Gives the agent's name back, then ends the loop.
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

}  // namespace agent
