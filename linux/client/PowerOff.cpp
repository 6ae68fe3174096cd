#include "linux/client/PowerOff.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "files/PrintableText.h"
#include "linux/bus/Bus.h"
#include "linux/bus/PowerLock.h"

namespace client {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::microseconds kQuestionLimit = 5s;
constexpr std::chrono::microseconds kUnlockLimit = 2s;
// Long enough for a password, but a logind that hangs cannot block the program for ever.
constexpr std::chrono::microseconds kPowerOffLimit = 2min;

bool isShuttingDown(sd_bus* connection) {
    bus::Answer answer;
    bus::makeCall(bus::newPropertyCall(connection, bus::kLogind, "PreparingForShutdown"), kQuestionLimit,
                  answer);
    int shuttingDown = 0;
    return sd_bus_message_read(answer.message.get(), "v", "b", &shuttingDown) > 0 && shuttingDown != 0;
}

// A lock that keeps the computer on.
struct Lock {
    std::string owner;
    std::string reason;
};

std::vector<Lock> locks(sd_bus* connection) {
    bus::Answer answer;
    bus::makeCall(bus::newCall(connection, bus::kLogind, "ListInhibitors"), kQuestionLimit, answer);
    sd_bus_message* const list = answer.message.get();
    std::vector<Lock> locks;
    if (sd_bus_message_enter_container(list, SD_BUS_TYPE_ARRAY, "(ssssuu)") < 0) {
        return locks;
    }
    const char* what = nullptr;
    const char* who = nullptr;
    const char* why = nullptr;
    const char* mode = nullptr;
    uint32_t user = 0;
    uint32_t process = 0;
    while (sd_bus_message_read(list, "(ssssuu)", &what, &who, &why, &mode, &user, &process) > 0) {
        if (std::strstr(what, "shutdown") != nullptr && std::strcmp(mode, "delay") != 0) {
            locks.push_back({who, why});
        }
    }
    return locks;
}

// logind notices the end of a lock some time after it, and may handle a later call first.
void waitForEndOfOwnLock(sd_bus* connection) {
    const auto end = std::chrono::steady_clock::now() + kUnlockLimit;
    const auto isOwn = [](const Lock& lock) { return lock.owner == bus::kLockOwner; };
    while (std::ranges::any_of(locks(connection), isOwn) && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(10ms);
    }
}

// Such as "; it is prevented by Software Updater (installing)".
std::string whoPreventsIt(sd_bus* connection) {
    std::string programs;
    for (const Lock& lock : locks(connection)) {
        programs += programs.empty() ? "; it is prevented by " : ", ";
        programs += lock.owner + " (" + lock.reason + ")";
    }
    return programs;
}

}  // namespace

bool powerOffThroughLogind(sd_bus* connection) {
    waitForEndOfOwnLock(connection);
    const bus::Message call = bus::newCall(connection, bus::kLogind, "PowerOff");
    sd_bus_message_set_allow_interactive_authorization(call.get(), 1);
    sd_bus_message_append(call.get(), "b", 1);
    bus::Answer answer;
    bus::makeCall(call, kPowerOffLimit, answer);
    if (answer.message || isShuttingDown(connection)) {
        return true;
    }
    files::say("The computer was not switched off: " + answer.error.reason(answer.result) +
               whoPreventsIt(connection) + ". Shut it down from the desktop's menu.");
    return false;
}

}  // namespace client
