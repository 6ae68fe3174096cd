#include "linux/agent/WriteScope.h"

#include <cerrno>
#include <chrono>
#include <utility>

#include "files/PrintableText.h"

namespace agent {
namespace {

using namespace std::chrono_literals;

// Nobody waits for the answers, and systemd is slow while it reloads its units.
constexpr std::chrono::microseconds kLimit = 25s;

constexpr char kExists[] = "org.freedesktop.systemd1.UnitExists";

// The users of the computer's sessions, as logind names them; their numbers follow.
constexpr char kLogindUsers[] = "/org/freedesktop/login1/user/_";

std::string textOf(const sd_bus_error& error) {
    return error.message != nullptr ? error.message : error.name;
}

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
    : connection_(connection),
      client_(sd_bus_message_get_sender(call)),
      process_(processOf(call)),
      user_(user) {
    if (process_ < 0) {
        sayWhyNot(bus::Error().reason(process_));
        return;
    }
    if (user_ == 0) {
        // Root may have any process moved. To logind, one that sudo has started is still another user's.
        ask(newScopeCall(connection, process_, user_), onMoved);
        return;
    }
    // The number is that of the process that opened the connection. If it has handed the connection on and
    // ended, another process may have that number by now.
    const bus::Message question = bus::newCall(connection, bus::kLogind, "GetUserByPID");
    sd_bus_message_append(question.get(), "u", static_cast<uint32_t>(process_));
    ask(question, onUser);
}

void WriteScope::ask(const bus::Message& question, sd_bus_message_handler_t onAnswer) {
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_call_async(connection_, &slot, question.get(), onAnswer, this,
                                         static_cast<uint64_t>(kLimit.count()));
    pending_.reset(slot);
    if (result < 0) {
        sayWhyNot(bus::Error().reason(result));
    }
}

int WriteScope::onUser(sd_bus_message* answer, void* scope, sd_bus_error* /*error*/) {
    auto* const self = static_cast<WriteScope*>(scope);
    const bus::Slot answered = std::move(self->pending_);
    if (const sd_bus_error* const error = sd_bus_message_get_error(answer); error != nullptr) {
        self->sayWhyNot(textOf(*error));
        return 1;
    }
    const char* path = "";
    sd_bus_message_read(answer, "o", &path);
    if (path != kLogindUsers + std::to_string(self->user_)) {
        self->sayWhyNot("logind does not count its process among its user's");
        return 1;
    }
    self->ask(newScopeCall(self->connection_, self->process_, self->user_), onMoved);
    return 1;
}

int WriteScope::onMoved(sd_bus_message* answer, void* scope, sd_bus_error* /*error*/) {
    const sd_bus_error* const error = sd_bus_message_get_error(answer);
    // The process is in that scope already.
    if (error != nullptr && sd_bus_error_has_name(error, kExists) == 0) {
        static_cast<WriteScope*>(scope)->sayWhyNot(textOf(*error));
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
