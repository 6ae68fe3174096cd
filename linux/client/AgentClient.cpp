#include "linux/client/AgentClient.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <thread>

#include "files/PrintableText.h"
#include "linux/bus/AgentInterface.h"
#include "linux/bus/PowerLock.h"
#include "linux/client/AgentFailures.h"
#include "linux/client/AgentPulse.h"
#include "linux/client/ClaimMeaning.h"
#include "linux/client/PowerOff.h"

namespace client {
namespace {

using namespace std::chrono_literals;

// The calls that one attempt to get a lock needs, together.
constexpr std::chrono::seconds kLockLimit = 10s;
// The calls that may have to start the agent, which takes its time on a busy computer.
constexpr std::chrono::microseconds kStartLimit = 15s;
// A claim without a question for a password, for which polkit may have to be started as well.
constexpr std::chrono::microseconds kPolkitLimit = 25s;

// For the window, which is not drawn meanwhile.
constexpr std::chrono::microseconds kEndLimit = 500ms;

// Between two attempts to get a lock while the computer is going to sleep or shutting down.
constexpr std::chrono::milliseconds kBetweenTries = 100ms;

constexpr char kNoReply[] = "org.freedesktop.DBus.Error.NoReply";

// The next value in the answer says whether a scheduled shutdown was cancelled.
void sayWhetherCancelled(const bus::Message& answer) {
    int hasCancelled = 0;
    if (sd_bus_message_read(answer.get(), "b", &hasCancelled) > 0 && hasCancelled != 0) {
        files::say(
            "The computer was scheduled to shut down. That was cancelled, so that it does not interrupt the "
            "write. Schedule it again after the write.");
    }
}

}  // namespace

sd_bus* AgentClient::connection(int& result) {
    if (!connection_ || sd_bus_is_open(connection_.get()) <= 0) {
        connection_ = bus::openSystemBus(limit(), result);
    }
    return connection_.get();
}

bus::Message AgentClient::newCall(const bus::Method& method, Answer& answer) {
    if (!whyGivenUp_.empty()) {
        answer.result = -ETIMEDOUT;
        return nullptr;
    }
    return bus::newCall(connection(answer.result), bus::kAgent, method.name);
}

void AgentClient::makeCall(const bus::Message& call, std::chrono::microseconds limit, Answer& answer,
                           const std::function<bool()>& mayWait) {
    if (call) {
        answer.message = bus::answerTo(call, limit, answer.error, answer.result, mayWait);
    }
}

void AgentClient::callAgent(const bus::Message& call, std::chrono::microseconds limit, Answer& answer,
                            const std::function<bool()>& mayWait) {
    bool isSilent = false;
    {
        AgentPulse pulse(connection_.get());
        makeCall(call, limit, answer, [&] {
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
    connection_.reset();
}

std::optional<std::vector<pci::FoundCard>> AgentClient::cards() {
    Answer answer;
    callAgent(newCall(bus::kCards, answer), kStartLimit, answer);
    sd_bus_message* const list = answer.message.get();
    if (sd_bus_message_enter_container(list, SD_BUS_TYPE_ARRAY, bus::kCardTypes) < 0) {
        return std::nullopt;
    }
    std::vector<pci::FoundCard> cards;
    const char* address = nullptr;
    const char* name = nullptr;
    const char* location = nullptr;
    const char* refusal = nullptr;
    int isSimulated = 0;
    while (sd_bus_message_read(list, bus::kCardTypes, &address, &name, &location, &isSimulated, &refusal) >
           0) {
        cards.push_back({address, name, location, isSimulated != 0, refusal});
    }
    return cards;
}

std::string AgentClient::whyNotClaimed(const Answer& answer) const {
    if (!whyGivenUp_.empty()) {
        return whyGivenUp_;
    }
    return connection_ ? whyTheAgentFails(answer.error, answer.result) : whyNoBus(answer.result);
}

void AgentClient::askForClaim(bool mayAsk, Answer& answer) {
    const bus::Message call = newCall(bus::kClaim, answer);
    sd_bus_message_append(call.get(), bus::kClaim.arguments, static_cast<int>(mayAsk));
    callAgent(call, mayAsk ? bus::kNoLimit : kPolkitLimit, answer, mayWait_);
}

Host::RightAnswer AgentClient::claim(bool mayAsk) {
    std::optional<Answer> answer(std::in_place);
    askForClaim(mayAsk, *answer);
    if (answer->error.is(kNoReply)) {
        // The agent exits when nobody has used it for a while, and may have done so just now.
        askForClaim(mayAsk, answer.emplace());
    }
    if (answer->result == -ECANCELED) {
        // So that the claim is not granted later. The agent withdraws its question.
        connection_.reset();
        return Host::RightAnswer::cancelled;
    }
    const char* text = "";
    sd_bus_message_read(answer->message.get(), bus::kClaim.answer, &text);
    if (const auto known = bus::claimAnswerOf(text)) {
        const ClaimMeaning meaning = meaningOf(*known);
        if (mayAsk && meaning.explanation != nullptr) {
            files::say(meaning.explanation);
        }
        return meaning.right;
    }
    if (mayAsk) {
        files::say(whyNotClaimed(*answer));
    }
    return Host::RightAnswer::denied;
}

// The calls from here on mean something only to an agent that knows this program, so they do not start
// another agent.

void AgentClient::letGo() {
    Answer answer;
    const bus::Message call = newCall(bus::kLetGo, answer);
    sd_bus_message_set_auto_start(call.get(), 0);
    makeCall(call, kLimit, answer);
}

std::optional<pci::OpenedRange> AgentClient::openRange(const std::string& address, uint32_t memoryRange) {
    Answer answer;
    const bus::Message call = newCall(bus::kOpenRange, answer);
    sd_bus_message_set_auto_start(call.get(), 0);
    sd_bus_message_append(call.get(), bus::kOpenRange.arguments, address.c_str(), memoryRange);
    makeCall(call, kLimit, answer);
    int theMessages = -1;
    uint32_t offsetInPage = 0;
    uint64_t bytes = 0;
    sd_bus_message_read(answer.message.get(), bus::kOpenRange.answer, &theMessages, &offsetInPage, &bytes);
    bus::Descriptor file = bus::Descriptor::duplicate(theMessages);
    if (!file) {
        files::say("The card at " + address + " cannot be opened: " + answer.error.reason(answer.result) +
                   ".");
        return std::nullopt;
    }
    // A card's ranges are far smaller than 4 GB; of a larger one, the beginning is enough.
    return pci::OpenedRange{.file = files::OpenFile(file.release(), address),
                            .offsetInPage = offsetInPage,
                            .bytes = static_cast<uint32_t>(std::min<uint64_t>(bytes, UINT32_MAX))};
}

bool AgentClient::keepWaiting() {
    if (mayWait_) {
        mayWait_();
    }
    return true;
}

bool AgentClient::takeAgentsLock(Answer& answer) {
    const bus::Message call = newCall(bus::kBeginWrite, answer);
    sd_bus_message_set_auto_start(call.get(), 0);
    makeCall(call, limit(), answer, [this] { return keepWaiting(); });
    bus::Descriptor lock = bus::lockIn(answer.message);
    if (!lock) {
        return false;
    }
    lock_ = std::move(lock);
    sayWhetherCancelled(answer.message);
    return true;
}

// The user's own lock. It stops a lid, a timer and other users, but not the user who asks for a shutdown.
bool AgentClient::takeOwnLock(Answer& answer) {
    const auto mayWait = [this] { return keepWaiting(); };
    ownLockConnection_ = bus::openSystemBus(limit(), answer.result, mayWait);
    makeCall(bus::newLockCall(ownLockConnection_.get()), limit(), answer, mayWait);
    bus::Descriptor lock = bus::lockIn(answer.message);
    if (!lock) {
        return false;
    }
    // A lock that a failed write has left may be the agent's, which is better.
    if (!lock_) {
        lock_ = std::move(lock);
    }
    Answer cancelled;
    makeCall(bus::newCancelCall(ownLockConnection_.get()), limit(), cancelled, mayWait);
    sayWhetherCancelled(cancelled.message);
    return true;
}

void AgentClient::takeLock() {
    // Once the computer is on its way to sleep or off, other calls fail as well, and the write must not begin
    // before the computer is awake again. But such a failure may also be permanent.
    std::optional<Clock::time_point> lastGoingDown;
    while (true) {
        lockDeadline_ = Clock::now() + kLockLimit;
        Answer agents;
        Answer own;
        if (takeAgentsLock(agents)) {
            return;
        }
        const bool hasOwn = !agents.error.is(bus::kIsGoingDown) && takeOwnLock(own);
        const bool isGoingDown = agents.error.is(bus::kIsGoingDown) || own.error.is(bus::kIsGoingDown);
        if (isGoingDown && !lastGoingDown) {
            files::say(
                "The computer is going to sleep or shutting down. The write begins when it is awake again.");
        }
        if (isGoingDown) {
            lastGoingDown = Clock::now();
        }
        if (hasOwn || !lastGoingDown || Clock::now() - *lastGoingDown > timeAwake_) {
            files::say(
                std::string(lock_ ? "You can switch the computer off during the write: "
                                  : "The computer can be switched off or put to sleep during the write: ") +
                agents.error.reason(agents.result) + ". Do not do this until the write has ended.");
            return;
        }
        keepWaiting();
        std::this_thread::sleep_for(kBetweenTries);
    }
}

void AgentClient::beginWrite() {
    try {
        // Even with a lock that a failed write has left: root can have scheduled a shutdown all the same.
        takeLock();
        sessionLock_.take();
    } catch (const std::exception& exception) {
        // There may be no memory for a text.
        std::fprintf(stderr, "The computer can be switched off or put to sleep during the write: %s\n",
                     exception.what());
    }
    lockDeadline_ = Clock::time_point::max();
}

void AgentClient::endWrite() {
    // This alone ends the lock if the agent has died.
    lock_.close();
    ownLockConnection_.reset();
    sessionLock_.release();
    // Nothing depends on the answer, but before it comes whatever the agent answered too late, perhaps with
    // another lock. An agent to which there is no connection any more has noticed that.
    Answer answer;
    const bus::Message call = bus::newCall(connection_.get(), bus::kAgent, bus::kEndWrite.name);
    sd_bus_message_set_auto_start(call.get(), 0);
    makeCall(call, kEndLimit, answer);
}

bool AgentClient::powerOff() {
    if (lock_) {
        // From systemd 257 on, the lock would bind this program, too.
        endWrite();
    }
    int result = 0;
    sd_bus* const bus = connection(result);
    if (bus == nullptr) {
        files::say("The computer was not switched off because the system bus cannot be reached (" +
                   bus::Error().reason(result) + "). Shut it down from the desktop's menu.");
        return false;
    }
    return powerOffThroughLogind(bus);
}

}  // namespace client
