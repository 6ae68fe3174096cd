#include "linux/agent/PolkitPulse.h"

#include <ctime>
#include <utility>

#include "files/UserError.h"

namespace agent {
namespace {

constexpr uint64_t kMicrosecondsBetweenLooks = 1'000'000;
// polkit answers nobody while an administrator's rule runs, and ends a rule after 15 seconds.
constexpr int kMostSilentLooks = 16;

}  // namespace

PolkitPulse::PolkitPulse(sd_bus* connection, std::function<void()> onStopped)
    : connection_(connection), onStopped_(std::move(onStopped)) {
    sd_event_source* timer = nullptr;
    // Of a clock that stands still while the computer sleeps.
    const int result = sd_event_add_time_relative(sd_bus_get_event(connection), &timer, CLOCK_MONOTONIC,
                                                  kMicrosecondsBetweenLooks, 0, onTimer, this);
    if (result < 0) {
        throw files::UserError("No timer could be created: " + bus::Error().reason(result) + ".");
    }
    timer_.reset(timer);
}

// Silence is counted in looks, because an answer waits to be read while this program is stopped or busy.
int PolkitPulse::onTimer(sd_event_source* timer, uint64_t /*time*/, void* pulse) {
    auto* const self = static_cast<PolkitPulse*>(pulse);
    if (self->pending_ && ++self->silentLooks_ == kMostSilentLooks) {
        const auto onStopped = std::move(self->onStopped_);
        onStopped();
        return 0;
    }
    if (!self->pending_) {
        self->ask();
    }
    sd_event_source_set_time_relative(timer, kMicrosecondsBetweenLooks);
    sd_event_source_set_enabled(timer, SD_EVENT_ONESHOT);
    return 0;
}

// Any answer shows that polkit lives, an error, too. As long as the bus has yet to start polkit, the bus
// answers for it.
void PolkitPulse::ask() {
    const bus::Message question = bus::newPropertyCall(connection_, bus::kPolkit, "BackendVersion");
    sd_bus_message_set_auto_start(question.get(), 0);
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_async(connection_, &slot, question.get(), onAnswer, this, UINT64_MAX) >= 0) {
        pending_.reset(slot);
    }
}

int PolkitPulse::onAnswer(sd_bus_message* /*answer*/, void* pulse, sd_bus_error* /*error*/) {
    auto* const self = static_cast<PolkitPulse*>(pulse);
    self->pending_.reset();
    self->silentLooks_ = 0;
    return 1;
}

}  // namespace agent
