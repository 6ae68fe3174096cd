#include "linux/agent/WriteLock.h"

#include <cerrno>
#include <string>
#include <utility>

#include "files/PrintableText.h"
#include "files/UserError.h"
#include "linux/bus/AgentInterface.h"
#include "linux/bus/PowerLock.h"

namespace agent {
namespace {

using namespace std::chrono_literals;

// Together shorter than a client's time limit.
constexpr std::chrono::microseconds kLockLimit = 3s;
constexpr std::chrono::microseconds kCancelLimit = 1s;

// Root rarely schedules a shutdown less than a minute ahead.
constexpr std::chrono::microseconds kBetweenCancels = 5s;

std::string reasonOf(const sd_bus_error* error) {
    return error != nullptr && error->message != nullptr ? error->message
                                                         : "the answer could not be understood";
}

}  // namespace

WriteLock::WriteLock(sd_bus* connection, sd_bus_message* call)
    : connection_(connection), call_(sd_bus_message_ref(call)), client_(sd_bus_message_get_sender(call)) {
    ask(bus::newLockCall(connection), kLockLimit, onLock);
}

void WriteLock::ask(const bus::Message& question, std::chrono::microseconds limit,
                    sd_bus_message_handler_t onAnswer) {
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_call_async(connection_, &slot, question.get(), onAnswer, this,
                                         static_cast<uint64_t>(limit.count()));
    if (result < 0) {
        throw files::UserError("logind could not be asked: " + bus::Error().reason(result) + ".");
    }
    pending_.reset(slot);
}

int WriteLock::onLock(sd_bus_message* answer, void* lock, sd_bus_error* /*error*/) {
    auto* const self = static_cast<WriteLock*>(lock);
    const bus::Slot answered = std::move(self->pending_);
    int theMessages = -1;
    if (sd_bus_message_is_method_error(answer, nullptr) != 0 ||
        sd_bus_message_read(answer, "h", &theMessages) < 0) {
        return self->refuse(sd_bus_message_get_error(answer));
    }
    self->lock_ = bus::Descriptor::duplicate(theMessages);
    if (!self->lock_) {
        return self->refuse(nullptr);
    }
    try {
        self->ask(bus::newCancelCall(self->connection_), kCancelLimit, onCancelled);
    } catch (const files::UserError& error) {
        files::say(error.what());
        return self->grant(-EIO);
    }
    return 1;
}

int WriteLock::onCancelled(sd_bus_message* answer, void* lock, sd_bus_error* /*error*/) {
    auto* const self = static_cast<WriteLock*>(lock);
    const bus::Slot answered = std::move(self->pending_);
    const int hasCancelled = bus::hasCancelled(answer);
    if (hasCancelled < 0) {
        self->sayUnknown(answer);
    }
    return self->grant(hasCancelled);
}

// Once for each write, or it would be said every few seconds.
void WriteLock::sayUnknown(sd_bus_message* answer) {
    if (!std::exchange(hasSaidUnknown_, true)) {
        files::say(client_ + ": It is unknown whether a scheduled shutdown was cancelled: " +
                   reasonOf(sd_bus_message_get_error(answer)));
    }
}

void WriteLock::askAgainLater() {
    sd_event_source* timer = nullptr;
    const int result =
        sd_event_add_time_relative(sd_bus_get_event(connection_), &timer, CLOCK_MONOTONIC,
                                   static_cast<uint64_t>(kBetweenCancels.count()), 0, onTimer, this);
    timer_.reset(timer);
    if (result < 0) {
        files::say(client_ + ": A shutdown that is scheduled from now on is not cancelled: " +
                   bus::Error().reason(result));
    }
}

int WriteLock::onTimer(sd_event_source* /*timer*/, uint64_t /*time*/, void* lock) {
    auto* const self = static_cast<WriteLock*>(lock);
    try {
        self->ask(bus::newCancelCall(self->connection_), kCancelLimit, onCancelledAgain);
    } catch (const files::UserError& error) {
        files::say(error.what());
    }
    self->askAgainLater();
    return 0;
}

int WriteLock::onCancelledAgain(sd_bus_message* answer, void* lock, sd_bus_error* /*error*/) {
    auto* const self = static_cast<WriteLock*>(lock);
    const bus::Slot answered = std::move(self->pending_);
    const int hasCancelled = bus::hasCancelled(answer);
    if (hasCancelled > 0) {
        files::say(self->client_ + ": A scheduled shutdown was cancelled during the write.");
    } else if (hasCancelled < 0) {
        self->sayUnknown(answer);
    }
    return 1;
}

int WriteLock::refuse(const sd_bus_error* error) {
    const bus::Message call = std::move(call_);
    const std::string reason = reasonOf(error);
    files::say(client_ + ": logind gave no lock for the write: " + reason);
    // The client must not write before this is over.
    const bool isGoingDown = sd_bus_error_has_name(error, bus::kIsGoingDown) != 0;
    if (!isGoingDown) {
        askAgainLater();  // because the write begins all the same, perhaps with a lock that the client has
    }
    return sd_bus_reply_method_errorf(call.get(), isGoingDown ? bus::kIsGoingDown : SD_BUS_ERROR_FAILED,
                                      "logind gave no lock: %s", reason.c_str());
}

int WriteLock::grant(int hasCancelled) {
    const bus::Message call = std::move(call_);
    if (hasCancelled > 0) {
        files::say(client_ + ": A scheduled shutdown was cancelled for the write.");
    }
    askAgainLater();
    files::say(client_ + ": The computer stays on during the write.");
    return sd_bus_reply_method_return(call.get(), bus::kBeginWrite.answer, lock_.number(), hasCancelled);
}

}  // namespace agent
