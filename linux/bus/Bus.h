#pragma once

// What both ends of the system bus need from sd-bus: owned objects, calls, and errors as text.
//
// Results are sd-bus's own: negative is an errno value. Its functions answer -EINVAL to a null object, so a
// chain of calls needs to check only its last result.

#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace bus {

template <auto release>
struct Releaser {
    void operator()(auto* object) const { release(object); }
};

// Closes without sending what is still queued, because a bus that hangs would never take it.
using Connection = std::unique_ptr<sd_bus, Releaser<sd_bus_close_unref>>;
using Message = std::unique_ptr<sd_bus_message, Releaser<sd_bus_message_unref>>;
// A callback that is registered for as long as the slot or the timer lives.
using Slot = std::unique_ptr<sd_bus_slot, Releaser<sd_bus_slot_unref>>;
using Timer = std::unique_ptr<sd_event_source, Releaser<sd_event_source_disable_unref>>;

class Error {
  public:
    Error() = default;
    Error(const Error&) = delete;
    Error& operator=(const Error&) = delete;
    ~Error() { sd_bus_error_free(&error_); }

    // For sd-bus to fill in; what was there before is forgotten.
    sd_bus_error* fill();
    // Whether the program that answered reported an error.
    bool isSet() const { return sd_bus_error_is_set(&error_) != 0; }
    bool is(const char* name) const { return sd_bus_error_has_name(&error_, name) != 0; }
    // The reason, without a full stop. If the program that answered gave one, the words are its own, so print
    // them with files::say; otherwise they are the system's for `result`.
    std::string reason(int result) const;

  private:
    sd_bus_error error_ = {};
};

// An object on the bus, by the name of its owner, its path, and the interface that is called.
struct Object {
    const char* owner;
    const char* path;
    const char* interface;
};

constexpr Object kLogind{"org.freedesktop.login1", "/org/freedesktop/login1",
                         "org.freedesktop.login1.Manager"};
constexpr Object kSystemd{"org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                          "org.freedesktop.systemd1.Manager"};
constexpr Object kPolkit{"org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
                         "org.freedesktop.PolicyKit1.Authority"};

// A call, still without arguments; null if there is no connection.
Message newCall(sd_bus* connection, const Object& object, const char* member);

// The call for the value of a property; null if there is no connection.
Message newPropertyCall(sd_bus* connection, const Object& object, const char* property);

// Longer than anybody takes to enter a password.
constexpr std::chrono::microseconds kNoLimit = std::chrono::hours(24 * 365);

// What a call brought: its answer, or null and why.
struct Answer {
    Message message;
    Error error;
    int result = 0;
};

// Makes a call and waits for its answer. There is none if it is an error, or does not come within the limit.
// If given, `mayWait` is asked about every 100 ms; if it says no, the result is -ECANCELED. A null call
// leaves `answer` as it is, with the reason why the call could not be created.
void makeCall(const Message& call, std::chrono::microseconds limit, Answer& answer,
              const std::function<bool()>& mayWait = {});

// Connect to the system bus, or to that of the user's session, within the limit. Null if that fails; `result`
// says why. `mayWait` is asked as above.
[[nodiscard]] Connection openSystemBus(std::chrono::microseconds limit, int& result,
                                       const std::function<bool()>& mayWait = {});
[[nodiscard]] Connection openSessionBus(std::chrono::microseconds limit, int& result);

}  // namespace bus
