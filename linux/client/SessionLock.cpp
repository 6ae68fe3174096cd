#include "linux/client/SessionLock.h"

#include <chrono>
#include <cstdint>

#include "linux/bus/PowerLock.h"

namespace client {
namespace {

constexpr std::chrono::microseconds kLimit = std::chrono::seconds(1);

// GNOME's, and that of the desktops which have adopted its interface.
constexpr bus::Object kSessionManager{"org.gnome.SessionManager", "/org/gnome/SessionManager",
                                      "org.gnome.SessionManager"};
constexpr uint32_t kNoLogOut = 1;
constexpr uint32_t kNoWindow = 0;

}  // namespace

void SessionLock::take() {
    if (connection_) {
        return;
    }
    bus::Answer answer;
    connection_ = bus::openSessionBus(kLimit, answer.result);
    const bus::Message call = bus::newCall(connection_.get(), kSessionManager, "Inhibit");
    sd_bus_message_set_auto_start(call.get(), 0);
    sd_bus_message_append(call.get(), "susu", "com.vornlabs.vupdater", kNoWindow, bus::kLockReason,
                          kNoLogOut);
    bus::makeCall(call, kLimit, answer);
    if (!answer.message) {
        connection_.reset();
    }
}

}  // namespace client
