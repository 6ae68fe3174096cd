#include "linux/client/AgentClient.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "files/PrintableText.h"
#include "linux/bus/AgentInterface.h"
#include "linux/bus/Bus.h"
#include "linux/bus/Descriptor.h"
#include "linux/client/ClaimMeaning.h"
#include "linux/client/PowerOff.h"

namespace client {
namespace {

using namespace std::chrono_literals;

// The calls that may have to start the agent, which takes its time on a busy computer.
constexpr std::chrono::microseconds kStartLimit = 15s;
// A claim without a question for a password, for which polkit may have to be started as well.
constexpr std::chrono::microseconds kPolkitLimit = 25s;

constexpr char kNoReply[] = "org.freedesktop.DBus.Error.NoReply";

}  // namespace

std::optional<std::vector<pci::FoundCard>> AgentClient::cards() {
    bus::Answer answer;
    agent_.callAndStartAgent(agent_.newCall(bus::kCards, answer), kStartLimit, answer);
    sd_bus_message* const list = answer.message.get();
    if (sd_bus_message_enter_container(list, SD_BUS_TYPE_ARRAY, bus::kCardTypes) < 0) {
        return std::nullopt;
    }
    std::vector<pci::FoundCard> cards;
    const char* address = nullptr;
    const char* name = nullptr;
    const char* location = nullptr;
    const char* refusal = nullptr;
    int isSimulated = 0;
    while (sd_bus_message_read(list, bus::kCardTypes, &address, &name, &location, &isSimulated, &refusal) >
           0) {
        cards.push_back({address, name, location, isSimulated != 0, refusal});
    }
    return cards;
}

void AgentClient::askForClaim(bool mayAsk, bus::Answer& answer) {
    const bus::Message call = agent_.newCall(bus::kClaim, answer);
    sd_bus_message_append(call.get(), bus::kClaim.arguments, static_cast<int>(mayAsk));
    agent_.callAndStartAgent(call, mayAsk ? bus::kNoLimit : kPolkitLimit, answer, mayWait_);
}

Host::RightAnswer AgentClient::claim(bool mayAsk) {
    std::optional<bus::Answer> answer(std::in_place);
    askForClaim(mayAsk, *answer);
    if (answer->error.is(kNoReply)) {
        // The agent exits when nobody has used it for a while, and may have done so just now.
        askForClaim(mayAsk, answer.emplace());
    }
    if (answer->result == -ECANCELED) {
        // So that the claim is not granted later. The agent withdraws its question.
        agent_.close();
        return Host::RightAnswer::cancelled;
    }
    const char* text = "";
    sd_bus_message_read(answer->message.get(), bus::kClaim.answer, &text);
    if (const auto known = bus::claimAnswerOf(text)) {
        const ClaimMeaning meaning = meaningOf(*known);
        if (mayAsk && meaning.explanation != nullptr) {
            files::say(meaning.explanation);
        }
        return meaning.right;
    }
    if (mayAsk) {
        files::say(agent_.whyItFailed(*answer));
    }
    return Host::RightAnswer::denied;
}

void AgentClient::letGo() {
    bus::Answer answer;
    const bus::Message call = agent_.newCall(bus::kLetGo, answer);
    callRunningAgent(call, AgentConnection::kLimit, answer);
}

std::optional<pci::OpenedRange> AgentClient::openRange(const std::string& address, uint32_t memoryRange) {
    bus::Answer answer;
    const bus::Message call = agent_.newCall(bus::kOpenRange, answer);
    sd_bus_message_append(call.get(), bus::kOpenRange.arguments, address.c_str(), memoryRange);
    callRunningAgent(call, AgentConnection::kLimit, answer);
    int theMessages = -1;
    uint32_t offsetInPage = 0;
    uint64_t bytes = 0;
    sd_bus_message_read(answer.message.get(), bus::kOpenRange.answer, &theMessages, &offsetInPage, &bytes);
    bus::Descriptor file = bus::Descriptor::duplicate(theMessages);
    if (!file) {
        files::say("The card at " + address + " cannot be opened: " + answer.error.reason(answer.result) +
                   ".");
        return std::nullopt;
    }
    // A card's ranges are far smaller than 4 GB; of a larger one, the beginning is enough.
    return pci::OpenedRange{.file = files::OpenFile(file.release(), address),
                            .offsetInPage = offsetInPage,
                            .bytes = static_cast<uint32_t>(std::min<uint64_t>(bytes, UINT32_MAX))};
}

bool AgentClient::powerOff() {
    if (locks_.keepComputerOn()) {
        // From systemd 257 on, a lock would bind this program, too.
        locks_.release();
    }
    int result = 0;
    sd_bus* const bus = agent_.systemBus(AgentConnection::kLimit, result);
    if (bus == nullptr) {
        files::say("The computer was not switched off because the system bus cannot be reached (" +
                   bus::Error().reason(result) + "). Shut it down from the desktop's menu.");
        return false;
    }
    return powerOffThroughLogind(bus);
}

}  // namespace client
