#pragma once

// The lock that keeps the computer on and awake during a client's write.
//
// It is asked for by root, because the locks of a user do not keep that user from switching off.

#include <systemd/sd-bus.h>

#include <string>

#include "linux/bus/Bus.h"
#include "linux/bus/Descriptor.h"

class WriteLock {
  public:
    // Asks logind for the lock and, when it is there, answers the client's call with a descriptor that holds
    // it, too. Throws files::UserError if logind cannot be asked; if it refuses, the call is answered with
    // that.
    WriteLock(sd_bus* connection, sd_bus_message* call);
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;

  private:
    static int onAnswer(sd_bus_message* answer, void* lock, sd_bus_error* error);

    bus::Message call_;
    bus::Slot pending_;
    bus::Descriptor lock_;
};
