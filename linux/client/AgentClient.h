#pragma once

// This computer's cards through the agent on the system bus, and logind for switching off.

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "linux/bus/AgentInterface.h"
#include "linux/bus/Bus.h"
#include "linux/bus/Descriptor.h"
#include "linux/client/SessionLock.h"
#include "linux/host/CardAgent.h"

namespace client {

class AgentClient : public host::CardAgent {
  public:
    // While a password or the lock for a write is waited for, `mayWait` is called about every 100 ms. If it
    // says no, the claim is cancelled and the agent withdraws its question. This never cancels a write.
    //
    // If the agent or the bus does not answer when cards are listed or claimed, it is given up: from then on
    // there are no cards, and nothing is waited for again. Somebody who takes long to enter a password is no
    // reason, for the agent answers meanwhile.
    //
    // A write does not begin while the computer is going to sleep or off, nor until it has been awake for
    // `timeAwake` since logind last said that it is.
    explicit AgentClient(std::function<bool()> mayWait = {},
                         std::chrono::milliseconds timeAwake = std::chrono::minutes(5))
        : mayWait_(std::move(mayWait)), timeAwake_(timeAwake) {}

    std::optional<std::vector<pci::FoundCard>> cards() override;
    Host::RightAnswer claim(bool mayAsk) override;
    void letGo() override;
    std::optional<pci::OpenedRange> openRange(const std::string& address, uint32_t memoryRange) override;
    void beginWrite() override;
    void endWrite() override;
    bool powerOff() override;

  private:
    using Clock = std::chrono::steady_clock;  // which stands still while the computer sleeps
    // A bus or an agent that hangs must not hold a write.
    static constexpr std::chrono::microseconds kLimit = std::chrono::seconds(5);

    // What a call brought: its answer, or null and why.
    struct Answer {
        bus::Message message;
        bus::Error error;
        int result = 0;
    };

    // The connection, opened when it is first needed and again after the bus has ended it; null, with the
    // reason, if it cannot be.
    sd_bus* connection(int& result);
    // Null if there is no connection or the agent was given up.
    bus::Message newCall(const bus::Method& method, Answer& answer);
    void makeCall(const bus::Message& call, std::chrono::microseconds limit, Answer& answer,
                  const std::function<bool()>& mayWait = {});
    // Makes a call that may have to start the agent, and gives the agent up if it is silent.
    void callAgent(const bus::Message& call, std::chrono::microseconds limit, Answer& answer,
                   const std::function<bool()>& mayWait = {});
    void askForClaim(bool mayAsk, Answer& answer);
    std::string whyNotClaimed(const Answer& answer) const;
    // Of one call.
    std::chrono::microseconds limit() const {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(lockDeadline_ - Clock::now());
        return std::clamp(left, std::chrono::microseconds::zero(), kLimit);
    }
    // Calls `mayWait` and ignores its answer.
    bool keepWaiting();
    // Hold a lock afterwards, or return false and why.
    [[nodiscard]] bool takeAgentsLock(Answer& answer);
    [[nodiscard]] bool takeOwnLock(Answer& answer);
    void takeLock();

    std::function<bool()> mayWait_;
    std::chrono::milliseconds timeAwake_;
    bus::Connection connection_;
    std::string whyGivenUp_;  // what to do about it; empty if the agent was not given up
    // While a lock is being taken.
    Clock::time_point lockDeadline_ = Clock::time_point::max();
    // Held during a write.
    bus::Descriptor lock_;
    // A lock that logind gives after its time limit stays unread in this connection and ends with it.
    bus::Connection ownLockConnection_;
    SessionLock sessionLock_;
};

}  // namespace client
