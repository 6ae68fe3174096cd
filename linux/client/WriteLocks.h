#pragma once

// What keeps the computer on and awake, and the user's session open, during a write: the agent's lock, or if
// that cannot be had the user's own, and the session manager's.

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include "linux/bus/Bus.h"
#include "linux/bus/Descriptor.h"
#include "linux/client/AgentConnection.h"
#include "linux/client/SessionLock.h"

namespace client {

class WriteLocks {
  public:
    // The connection must outlive this object. While a lock is waited for, `whileWaiting` is called about
    // every 100 ms. A computer that is going to sleep or off is waited for until it has been awake for
    // `timeAwake` since logind last said that it is.
    WriteLocks(AgentConnection& agent, std::function<void()> whileWaiting,
               std::chrono::milliseconds timeAwake)
        : agent_(agent), whileWaiting_(std::move(whileWaiting)), timeAwake_(timeAwake) {}
    WriteLocks(const WriteLocks&) = delete;
    WriteLocks& operator=(const WriteLocks&) = delete;

    // Takes them anew, even if a failed write has left some. A line on standard error says if the computer
    // can be switched off all the same; nothing is said if the session can be ended.
    void take();
    void release();
    bool keepComputerOn() const { return agentLock_ || userLock_; }

  private:
    using Clock = std::chrono::steady_clock;  // which stands still while the computer sleeps

    // Of the next call.
    std::chrono::microseconds limit() const {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline_ - Clock::now());
        return std::clamp(left, std::chrono::microseconds::zero(), AgentConnection::kLimit);
    }
    // Always true, for a call's `mayWait`.
    bool keepWaiting() const;
    // Return false, and why, if the lock cannot be had.
    [[nodiscard]] bool takeAgentLock(bus::Answer& answer);
    [[nodiscard]] bool takeUserLock(bus::Answer& answer);
    void takeComputerLock();
    void sayWhatIsNotPrevented(const bus::Answer& agentAnswer, bool hasTriedToCancel) const;

    AgentConnection& agent_;
    std::function<void()> whileWaiting_;
    std::chrono::milliseconds timeAwake_;
    Clock::time_point deadline_;  // of the attempt to get a lock
    bus::Descriptor agentLock_;   // which outlives the agent
    // Stops a lid, a timer and other users, but not the user who asks for a shutdown.
    bus::Descriptor userLock_;
    // A lock that logind gives after its time limit stays unread in this connection and ends with it.
    bus::Connection userLockConnection_;
    SessionLock sessionLock_;
};

}  // namespace client
