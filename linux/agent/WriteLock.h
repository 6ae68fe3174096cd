#pragma once

// The lock that keeps the computer on and awake during a client's write.
//
// Root asks for it, because a user's own lock does not stop that user from switching the computer off.

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <chrono>
#include <string>

#include "linux/bus/Bus.h"
#include "linux/bus/Descriptor.h"

namespace agent {

class WriteLock {
  public:
    // Asks logind for the lock and, once it is held, to cancel a scheduled shutdown. Then answers the
    // client's call with a descriptor that holds the lock, too, or with an error if logind refuses the lock.
    // From then on, with or without the lock, it cancels about every five seconds what root has scheduled
    // meanwhile. Throws files::UserError if logind cannot be asked. The lock ends when this object is gone
    // and the client has closed its descriptor. The connection must be attached to an event loop.
    WriteLock(sd_bus* connection, sd_bus_message* call);
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;

  private:
    // Makes a call to logind.
    void ask(const bus::Message& question, std::chrono::microseconds limit,
             sd_bus_message_handler_t onAnswer);
    static int onLock(sd_bus_message* answer, void* lock, sd_bus_error* error);
    static int onCancelled(sd_bus_message* answer, void* lock, sd_bus_error* error);
    static int onTimer(sd_event_source* timer, uint64_t time, void* lock);
    static int onCancelledAgain(sd_bus_message* answer, void* lock, sd_bus_error* error);
    void askAgainLater();
    void sayUnknown(sd_bus_message* answer);
    int refuse(const sd_bus_error* error);
    int grant(int hasCancelled);

    sd_bus* connection_;
    bus::Message call_;  // until it has been answered
    bus::Slot pending_;
    bus::Descriptor lock_;
    std::string client_;  // its name on the bus
    bus::Timer timer_;
    bool hasSaidUnknown_ = false;
};

}  // namespace agent
