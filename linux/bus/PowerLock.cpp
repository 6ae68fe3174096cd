#include "linux/bus/PowerLock.h"

namespace bus {

namespace {

constexpr char kWhat[] =
    "shutdown:sleep:idle:handle-power-key:handle-suspend-key:handle-hibernate-key:handle-lid-switch";

}  // namespace

Message newLockCall(sd_bus* connection) {
    Message call = newCall(connection, kLogind, "Inhibit");
    sd_bus_message_append(call.get(), "ssss", kWhat, kLockOwner, kLockReason, "block");
    return call;
}

Message newCancelCall(sd_bus* connection) {
    return newCall(connection, kLogind, "CancelScheduledShutdown");
}

int hasCancelled(sd_bus_message* answer) {
    int hasCancelled = 0;
    const int result = sd_bus_message_read(answer, "b", &hasCancelled);
    return result < 0 ? result : hasCancelled;
}

Descriptor lockIn(const Message& answer) {
    int theMessages = -1;
    sd_bus_message_read(answer.get(), "h", &theMessages);
    return Descriptor::duplicate(theMessages);
}

}  // namespace bus
