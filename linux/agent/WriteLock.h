#pragma once

// The lock that keeps the computer on and awake during a client's write.
//
// Root asks for it, because a user's own lock does not stop that user from switching the computer off.

#include <systemd/sd-bus.h>

#include <string>

#include "linux/bus/Bus.h"
#include "linux/bus/Descriptor.h"

namespace agent {

class WriteLock {
  public:
    // Asks logind for the lock, then answers the client's call with a descriptor that holds it, too, or with
    // an error if logind refuses. Throws files::UserError if logind cannot be asked. The lock ends when this
    // object is gone and the client has closed its descriptor.
    WriteLock(sd_bus* connection, sd_bus_message* call);
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;

  private:
    static int onAnswer(sd_bus_message* answer, void* lock, sd_bus_error* error);

    bus::Message call_;  // until it has been answered
    bus::Slot pending_;
    bus::Descriptor lock_;
};

}  // namespace agent
