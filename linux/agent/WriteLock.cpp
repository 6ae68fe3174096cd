#include "linux/agent/WriteLock.h"

#include <chrono>

#include "files/PrintableText.h"
#include "files/UserError.h"
#include "linux/bus/AgentInterface.h"
#include "linux/bus/PowerLock.h"

namespace agent {
namespace {

// Less than a client waits.
constexpr std::chrono::microseconds kLimit = std::chrono::seconds(4);

}  // namespace

WriteLock::WriteLock(sd_bus* connection, sd_bus_message* call) : call_(sd_bus_message_ref(call)) {
    const bus::Message question = bus::newLockCall(connection);
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_call_async(connection, &slot, question.get(), onAnswer, this,
                                         static_cast<uint64_t>(kLimit.count()));
    if (result < 0) {
        throw files::UserError("logind could not be asked: " + bus::Error().reason(result) + ".");
    }
    pending_.reset(slot);
}

int WriteLock::onAnswer(sd_bus_message* answer, void* lock, sd_bus_error* /*error*/) {
    auto* const self = static_cast<WriteLock*>(lock);
    const bus::Slot answered = std::move(self->pending_);
    const bus::Message call = std::move(self->call_);
    const std::string client = sd_bus_message_get_sender(call.get());
    int theMessages = -1;
    if (sd_bus_message_is_method_error(answer, nullptr) != 0 ||
        sd_bus_message_read(answer, "h", &theMessages) < 0) {
        const sd_bus_error* const error = sd_bus_message_get_error(answer);
        const char* const reason = error != nullptr && error->message != nullptr
                                       ? error->message
                                       : "the answer could not be understood";
        files::say(client + ": logind gave no lock for the write: " + reason);
        // The client must not write before this is over.
        const bool isGoingDown = sd_bus_error_has_name(error, bus::kIsGoingDown) != 0;
        return sd_bus_reply_method_errorf(call.get(), isGoingDown ? bus::kIsGoingDown : SD_BUS_ERROR_FAILED,
                                          "logind gave no lock: %s", reason);
    }
    self->lock_ = bus::Descriptor::duplicate(theMessages);
    files::say(client + ": The computer stays on during the write.");
    return sd_bus_reply_method_return(call.get(), bus::kBeginWrite.answer, self->lock_.number());
}

}  // namespace agent
