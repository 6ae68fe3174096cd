#include "linux/client/WriteLocks.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <thread>

#include "files/PrintableText.h"
#include "linux/bus/AgentInterface.h"
#include "linux/bus/PowerLock.h"

namespace client {
namespace {

using namespace std::chrono_literals;

// The calls that one attempt needs, together.
constexpr std::chrono::seconds kAttemptLimit = 10s;

// For the window, which is not drawn meanwhile.
constexpr std::chrono::microseconds kEndLimit = 500ms;

// Between two attempts while the computer is going to sleep or shutting down.
constexpr std::chrono::milliseconds kBetweenTries = 100ms;

// As an answer tells it: 1, 0, or negative if it is unknown.
void sayWhetherCancelled(int hasCancelled) {
    if (hasCancelled > 0) {
        files::say(
            "The computer was scheduled to shut down. That was cancelled, so that it does not interrupt the "
            "write. Schedule it again after the write.");
    } else if (hasCancelled < 0) {
        files::say(
            "It is unknown whether the computer is scheduled to shut down, which would interrupt the write. "
            "To prevent that, run as root: shutdown -c");
    }
}

}  // namespace

bool WriteLocks::keepWaiting() const {
    if (whileWaiting_) {
        whileWaiting_();
    }
    return true;
}

bool WriteLocks::takeAgentLock(bus::Answer& answer) {
    const bus::Message call = agent_.newCall(bus::kBeginWrite, answer, limit());
    callRunningAgent(call, limit(), answer, [this] { return keepWaiting(); });
    bus::Descriptor lock = bus::lockIn(answer.message);
    if (!lock) {
        answer.result = answer.message ? -EMFILE : answer.result;
        return false;
    }
    agentLock_ = std::move(lock);
    userLock_.close();
    int hasCancelled = -1;
    sd_bus_message_read(answer.message.get(), "i", &hasCancelled);
    sayWhetherCancelled(hasCancelled);
    return true;
}

bool WriteLocks::takeUserLock(bus::Answer& answer) {
    const auto mayWait = [this] { return keepWaiting(); };
    userLockConnection_ = bus::openSystemBus(limit(), answer.result, mayWait);
    bus::makeCall(bus::newLockCall(userLockConnection_.get()), limit(), answer, mayWait);
    bus::Descriptor lock = bus::lockIn(answer.message);
    if (!lock) {
        return false;
    }
    // A failed write may have left the agent's, which is better.
    if (!agentLock_) {
        userLock_ = std::move(lock);
    }
    bus::Answer cancelled;
    bus::makeCall(bus::newCancelCall(userLockConnection_.get()), limit(), cancelled, mayWait);
    sayWhetherCancelled(bus::hasCancelled(cancelled.message.get()));
    return true;
}

void WriteLocks::sayWhatIsNotPrevented(const bus::Answer& agentAnswer, bool hasTriedToCancel) const {
    if (!agentLock_) {
        files::say(std::string("Nothing prevents ") +
                   (userLock_ ? "you from switching the computer off"
                              : "the computer from being switched off or put to sleep") +
                   " during the write: " + agentAnswer.error.reason(agentAnswer.result) +
                   ". Leave it on until the write has ended.");
    }
    if (keepComputerOn() && !hasTriedToCancel) {
        sayWhetherCancelled(-1);
    }
}

void WriteLocks::takeComputerLock() {
    // Once the computer is on its way to sleep or off, other calls fail as well, and the write must not begin
    // before the computer is awake again. But such a failure may also be permanent.
    std::optional<Clock::time_point> lastGoingDown;
    while (true) {
        deadline_ = Clock::now() + kAttemptLimit;
        bus::Answer agentAnswer;
        bus::Answer userAnswer;
        if (takeAgentLock(agentAnswer)) {
            return;
        }
        const bool agentRefuses = agentAnswer.error.is(bus::kIsGoingDown);
        const bool isGranted = !agentRefuses && takeUserLock(userAnswer);
        const bool isGoingDown = agentRefuses || userAnswer.error.is(bus::kIsGoingDown);
        if (isGoingDown && !lastGoingDown) {
            files::say(
                "The computer is going to sleep or shutting down. The write begins when it is awake again.");
        }
        if (isGoingDown) {
            lastGoingDown = Clock::now();
        }
        if (isGranted || !lastGoingDown || Clock::now() - *lastGoingDown > timeAwake_) {
            sayWhatIsNotPrevented(agentAnswer, isGranted);
            return;
        }
        keepWaiting();
        std::this_thread::sleep_for(kBetweenTries);
    }
}

void WriteLocks::take() {
    try {
        // Even with a lock that a failed write has left: root can have scheduled a shutdown all the same.
        takeComputerLock();
        sessionLock_.take();
    } catch (const std::exception& exception) {
        // There may be no memory for a text.
        std::fprintf(stderr, "The write may be interrupted. Leave the computer on until it has ended: %s\n",
                     exception.what());
    }
}

void WriteLocks::release() {
    // This alone ends the locks if the agent has died.
    agentLock_.close();
    userLock_.close();
    userLockConnection_.reset();
    sessionLock_.release();
    // Nothing depends on the answer, but before it comes whatever the agent answered too late, perhaps with
    // another lock. An agent to which there is no connection any more has noticed that.
    bus::Answer answer;
    callRunningAgent(bus::newCall(agent_.systemBusIfConnected(), bus::kAgent, bus::kEndWrite.name), kEndLimit,
                     answer);
}

}  // namespace client
