#pragma once

// logind's lock that keeps the computer on and awake during a write.

#include "linux/bus/Bus.h"
#include "linux/bus/Descriptor.h"

namespace bus {

// logind's answer to the call once the computer is on its way to sleep or off, so that no lock can stop it.
constexpr char kIsGoingDown[] = "org.freedesktop.login1.OperationInProgress";

// Who holds the lock and why, as logind and the desktop tell a person.
constexpr char kLockOwner[] = "VUpdater";
constexpr char kLockReason[] = "Firmware is being written into a card";

// The call for the lock; null if there is no connection.
Message newLockCall(sd_bus* connection);

// The call that cancels a scheduled shutdown. logind looks at the locks when a shutdown is scheduled, not
// when it is due, so the lock alone does not stop one that was scheduled before. Make it while holding the
// lock, or another could be scheduled in between. Null if there is no connection.
Message newCancelCall(sd_bus* connection);

// Whether that call cancelled one, from its answer: 1 if so, 0 if none was scheduled, negative if that is
// unknown, because the answer is an error or null.
[[nodiscard]] int hasCancelled(sd_bus_message* answer);

// A second descriptor of the lock that an answer brought; empty if it brought none.
[[nodiscard]] Descriptor lockIn(const Message& answer);

}  // namespace bus
