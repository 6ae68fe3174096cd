#include "linux/client/AgentPulse.h"

#include <algorithm>
#include <cstdint>

#include "linux/bus/AgentInterface.h"

namespace client {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kBetweenQuestions = 1s;
// While this program is stopped or draws, an answer waits to be read, which is no silence.
constexpr std::chrono::milliseconds kMostOfALook = 200ms;

constexpr bus::Object kPeer{bus::kAgent.owner, bus::kAgent.path, "org.freedesktop.DBus.Peer"};

}  // namespace

void AgentPulse::look() {
    const Clock::time_point now = Clock::now();
    silence_ += std::min<Clock::duration>(now - lastLook_, kMostOfALook);
    lastLook_ = now;
    if (!isAnswered_ || now - lastQuestion_ < kBetweenQuestions) {
        return;
    }
    const bus::Message question = bus::newCall(connection_, kPeer, "Ping");
    sd_bus_message_set_auto_start(question.get(), 0);
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_async(connection_, &slot, question.get(), onAnswer, this, UINT64_MAX) >= 0) {
        question_.reset(slot);
        isAnswered_ = false;
        lastQuestion_ = now;
    }
}

int AgentPulse::onAnswer(sd_bus_message* /*answer*/, void* pulse, sd_bus_error* /*error*/) {
    auto* const self = static_cast<AgentPulse*>(pulse);
    self->isAnswered_ = true;
    self->silence_ = {};
    return 1;
}

}  // namespace client
