#pragma once

// Whether polkit is still there while its answer to a question is waited for, which may take as long as
// somebody takes to enter a password: a polkit that waits for somebody answers other calls meanwhile.

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <functional>

#include "linux/bus/Bus.h"

namespace agent {

class PolkitPulse {
  public:
    // Asks polkit about every second until it is destroyed. The connection, which must be attached to an
    // event loop, must outlive this object. After 16 seconds without an answer, calls `onStopped`, which may
    // destroy this object, and asks no more. Throws files::UserError if there can be no timer.
    PolkitPulse(sd_bus* connection, std::function<void()> onStopped);
    PolkitPulse(const PolkitPulse&) = delete;
    PolkitPulse& operator=(const PolkitPulse&) = delete;

  private:
    static int onTimer(sd_event_source* timer, uint64_t time, void* pulse);
    static int onAnswer(sd_bus_message* answer, void* pulse, sd_bus_error* error);
    void ask();

    sd_bus* connection_;
    std::function<void()> onStopped_;
    bus::Timer timer_;
    bus::Slot pending_;  // while polkit has not answered
    int silentLooks_ = 0;
};

}  // namespace agent
