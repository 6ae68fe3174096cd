#include "linux/agent/WriteScope.h"

#include <cerrno>
#include <chrono>

#include "files/PrintableText.h"

namespace agent {
namespace {

using namespace std::chrono_literals;

// Nobody waits for the answer, and systemd is slow while it reloads its units.
constexpr std::chrono::microseconds kLimit = 25s;

constexpr char kExists[] = "org.freedesktop.systemd1.UnitExists";

// The sender's process, by the bus's guarantee, or a negative result. In a container the bus still knows it
// by its number on the host.
pid_t processOf(sd_bus_message* call) {
    sd_bus_creds* credentials = nullptr;
    pid_t process = 0;
    int result = sd_bus_query_sender_creds(call, SD_BUS_CREDS_PID, &credentials);
    if (result >= 0) {
        result = sd_bus_creds_get_pid(credentials, &process);
    }
    sd_bus_creds_unref(credentials);
    if (result < 0) {
        return result;
    }
    // To systemd, 0 would be this process.
    return process > 0 ? process : -ESRCH;
}

bus::Message newScopeCall(sd_bus* connection, pid_t process, uid_t user) {
    // One scope for a process, however often it begins a write.
    const std::string name = "vupdater-write-" + std::to_string(process) + ".scope";
    // Outside the user's own systemd, but still among the user's processes. Elsewhere polkit would take the
    // process for one without a session, and it could no longer switch the computer off after the write.
    const std::string slice = "user-" + std::to_string(user) + ".slice";
    bus::Message call = bus::newCall(connection, bus::kSystemd, "StartTransientUnit");
    sd_bus_message_append(call.get(), "ss", name.c_str(), "fail");
    sd_bus_message_append(call.get(), "a(sv)", 5,                                             //
                          "Description", "s", "VUpdater, which has begun to write firmware",  //
                          "Slice", "s", slice.c_str(),                                        //
                          "PIDs", "au", 1, static_cast<uint32_t>(process),                    //
                          "CollectMode", "s", "inactive-or-failed",                           //
                          "ManagedOOMPreference", "s", "omit");
    sd_bus_message_append(call.get(), "a(sa(sv))", 0);
    return call;
}

}  // namespace

WriteScope::WriteScope(sd_bus* connection, sd_bus_message* call, uid_t user)
    : client_(sd_bus_message_get_sender(call)) {
    int result = processOf(call);
    if (result >= 0) {
        const bus::Message question = newScopeCall(connection, result, user);
        sd_bus_slot* slot = nullptr;
        result = sd_bus_call_async(connection, &slot, question.get(), onAnswer, this,
                                   static_cast<uint64_t>(kLimit.count()));
        pending_.reset(slot);
    }
    if (result < 0) {
        sayWhyNot(bus::Error().reason(result));
    }
}

int WriteScope::onAnswer(sd_bus_message* answer, void* scope, sd_bus_error* /*error*/) {
    const sd_bus_error* const error = sd_bus_message_get_error(answer);
    // The process is in that scope already.
    if (error != nullptr && sd_bus_error_has_name(error, kExists) == 0) {
        static_cast<WriteScope*>(scope)->sayWhyNot(error->message != nullptr ? error->message : error->name);
    }
    return 1;
}

void WriteScope::sayWhyNot(const std::string& reason) const {
    files::say(client_ +
               ": The end of the user's session may end the write, because systemd did not move the program "
               "out of it: " +
               reason);
}

}  // namespace agent
