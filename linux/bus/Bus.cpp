#include "linux/bus/Bus.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace bus {

namespace {

using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr microseconds kMoment = std::chrono::milliseconds(100);

// Processes the connection briefly. Returns a negative result if it has failed or the time is up.
int advance(sd_bus* connection, steady_clock::time_point end) {
    const int processed = sd_bus_process(connection, nullptr);
    if (processed != 0) {
        return processed;
    }
    const auto left = duration_cast<microseconds>(end - steady_clock::now());
    if (left <= microseconds::zero()) {
        return -ETIMEDOUT;
    }
    const int waited = sd_bus_wait(connection, static_cast<uint64_t>(std::min(left, kMoment).count()));
    return waited == -EINTR ? 0 : waited;
}

Connection open(int (*begin)(sd_bus**), microseconds limit, int& result,
                const std::function<bool()>& mayWait = {}) {
    sd_bus* opened = nullptr;
    result = begin(&opened);
    Connection connection(opened);
    // sd-bus by itself would wait for the bus's greeting for half a minute.
    const auto end = steady_clock::now() + limit;
    while (result >= 0 && sd_bus_is_ready(opened) == 0) {
        result = mayWait && !mayWait() ? -ECANCELED : advance(opened, end);
    }
    return result < 0 ? nullptr : std::move(connection);
}

int keepAnswer(sd_bus_message* answer, void* kept, sd_bus_error* /*error*/) {
    static_cast<Message*>(kept)->reset(sd_bus_message_ref(answer));
    return 1;
}

}  // namespace

sd_bus_error* Error::fill() {
    sd_bus_error_free(&error_);
    return &error_;
}

std::string Error::reason(int result) const {
    std::string reason = std::generic_category().message(std::abs(result));
    if (error_.message != nullptr && *error_.message != '\0') {
        reason = error_.message;
    } else if (error_.name != nullptr) {
        reason = error_.name;
    }
    if (reason.ends_with('.')) {
        reason.pop_back();
    }
    return reason;
}

Message newCall(sd_bus* connection, const Object& object, const char* member) {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_call(connection, &message, object.owner, object.path, object.interface, member);
    return Message(message);
}

Message newPropertyCall(sd_bus* connection, const Object& object, const char* property) {
    Message call = newCall(connection, {object.owner, object.path, "org.freedesktop.DBus.Properties"}, "Get");
    sd_bus_message_append(call.get(), "ss", object.interface, property);
    return call;
}

void makeCall(const Message& call, microseconds limit, Answer& answer, const std::function<bool()>& mayWait) {
    if (!call) {
        return;
    }
    // sd_bus_call would lose the answer if a signal interrupted it.
    sd_bus* const connection = sd_bus_message_get_bus(call.get());
    Message& message = answer.message;
    sd_bus_slot* slot = nullptr;
    answer.result = sd_bus_call_async(connection, &slot, call.get(), keepAnswer, &message, UINT64_MAX);
    const Slot pending(slot);
    const auto end = steady_clock::now() + limit;
    while (answer.result >= 0 && !message) {
        answer.result = mayWait && !mayWait() ? -ECANCELED : advance(connection, end);
    }
    if (sd_bus_message_is_method_error(message.get(), nullptr) > 0) {
        answer.result = sd_bus_error_copy(answer.error.fill(), sd_bus_message_get_error(message.get()));
        message.reset();
    }
}

Connection openSystemBus(microseconds limit, int& result, const std::function<bool()>& mayWait) {
    return open(sd_bus_open_system, limit, result, mayWait);
}

Connection openSessionBus(microseconds limit, int& result) {
    return open(sd_bus_open_user, limit, result);
}

}  // namespace bus
