#pragma once

// Lets a client outlive its user's session during a write.
//
// Desktops start programs as parts of the user's own systemd. Once the user's last session has ended,
// whatever is still running there is killed, which in the middle of a write would leave the card erased.

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <string>

#include "linux/bus/Bus.h"

namespace agent {

class WriteScope {
  public:
    // Asks the computer's systemd to move the caller's process into a scope, which ends with the process.
    // Does not wait for systemd, and does not fail if systemd does: a write without the scope is better than
    // none. Leaves a process that logind does not count among the user's, unless the user is root. Only the
    // journal has the reason if the process stays where it is. The user is the caller's.
    WriteScope(sd_bus* connection, sd_bus_message* call, uid_t user);
    WriteScope(const WriteScope&) = delete;
    WriteScope& operator=(const WriteScope&) = delete;

  private:
    // Makes a call whose answer is handled later, or says why it cannot be made.
    void ask(const bus::Message& question, sd_bus_message_handler_t onAnswer);
    static int onUser(sd_bus_message* answer, void* scope, sd_bus_error* error);
    static int onMoved(sd_bus_message* answer, void* scope, sd_bus_error* error);
    void sayWhyNot(const std::string& reason) const;

    sd_bus* connection_;
    std::string client_;  // its name on the bus
    pid_t process_;
    uid_t user_;
    bus::Slot pending_;
};

}  // namespace agent
