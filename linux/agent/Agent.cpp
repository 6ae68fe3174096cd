#include "linux/agent/Agent.h"

#include <systemd/sd-daemon.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "files/PrintableText.h"
#include "files/UserError.h"

namespace agent {
namespace {

using namespace std::chrono_literals;

// Enough for all users of one computer, and few enough to keep the agent small.
constexpr std::size_t kMostClients = 16;
// So that one user cannot take every slot.
constexpr std::ptrdiff_t kMostClientsOfAUser = 4;

constexpr std::chrono::microseconds kTakeBackInterval = 1s;

constexpr char kNameLostMatch[] =
    "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
    "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg2=''";

void require(int result, const char* what) {
    if (result < 0) {
        throw files::UserError(std::string(what) + ": " + bus::Error().reason(result) + ".");
    }
}

// The bus guarantees that this is the sender's user.
uid_t userOf(sd_bus_message* call) {
    sd_bus_creds* credentials = nullptr;
    uid_t user = 0;
    int result = sd_bus_query_sender_creds(call, SD_BUS_CREDS_EUID, &credentials);
    if (result >= 0) {
        result = sd_bus_creds_get_euid(credentials, &user);
    }
    sd_bus_creds_unref(credentials);
    require(result, "The bus does not report the client's user");
    return user;
}

}  // namespace

template <Agent::Member method>
int Agent::handle(sd_bus_message* call, void* agent, sd_bus_error* error) {
    auto* const self = static_cast<Agent*>(agent);
    try {
        (self->*method)(call);
        self->setTimer();
        return 1;
    } catch (const std::exception& exception) {
        return sd_bus_error_set(error, SD_BUS_ERROR_FAILED, exception.what());
    }
}

template <Agent::Member method>
constexpr sd_bus_vtable Agent::entry(const bus::Method& known) {
    return SD_BUS_METHOD(known.name, known.arguments, known.answer, handle<method>,
                         SD_BUS_VTABLE_UNPRIVILEGED);
}

const sd_bus_vtable Agent::kMethods[] = {SD_BUS_VTABLE_START(0),
                                         entry<&Agent::cards>(bus::kCards),
                                         entry<&Agent::claim>(bus::kClaim),
                                         entry<&Agent::letGo>(bus::kLetGo),
                                         entry<&Agent::openRange>(bus::kOpenRange),
                                         entry<&Agent::beginWrite>(bus::kBeginWrite),
                                         entry<&Agent::endWrite>(bus::kEndWrite),
                                         SD_BUS_VTABLE_END};

Agent::Agent(sd_event* loop, sd_bus* connection, CardKeeper& keeper, std::chrono::seconds idleTime)
    : loop_(loop), connection_(connection), keeper_(keeper), idleTime_(idleTime) {}

Agent::~Agent() {
    sd_event_source_unref(timer_);
}

void Agent::start() {
    sd_bus_slot* slot = nullptr;
    require(
        sd_bus_add_object_vtable(connection_, &slot, bus::kAgent.path, bus::kAgent.interface, kMethods, this),
        "The agent's methods could not be registered");
    object_.reset(slot);
    require(sd_bus_add_match(connection_, &slot, kNameLostMatch, onNameLost, this),
            "The bus does not report who leaves it");
    nameLost_.reset(slot);
    require(sd_event_add_time_relative(loop_, &timer_, CLOCK_MONOTONIC, 0, 0, onTimer, this),
            "No timer could be created");
    require(sd_bus_request_name(connection_, bus::kAgent.owner, 0),
            "The agent could not take its name on the bus. Only one agent can have it, and only as root");
    // Not before the name, because there might be another agent that lives.
    keeper_.takeOver();
    setTimer();
}

void Agent::cards(sd_bus_message* call) {
    if (sd_bus_message_get_expect_reply(call) == 0) {
        return;  // there is nothing else to do
    }
    sd_bus_message* created = nullptr;
    require(sd_bus_message_new_method_return(call, &created), "The answer could not be sent");
    const bus::Message answer(created);
    sd_bus_message_open_container(created, SD_BUS_TYPE_ARRAY, bus::kCardTypes);
    for (const pci::FoundCard& card : keeper_.list(sd_bus_message_get_sender(call))) {
        sd_bus_message_append(created, bus::kCardTypes, card.address.c_str(), card.name.c_str(),
                              card.location.c_str(), static_cast<int>(card.isSimulated),
                              card.refusal.c_str());
    }
    sd_bus_message_close_container(created);
    require(sd_bus_message_send(created), "The answer could not be sent");
}

void Agent::claim(sd_bus_message* call) {
    if (isExiting_) {
        // Without an answer: the bus tells the client that this agent has gone, and the client asks the next.
        return;
    }
    int mayAsk = 0;
    require(sd_bus_message_read(call, bus::kClaim.arguments, &mayAsk), "The arguments cannot be read");
    const std::string client = sd_bus_message_get_sender(call);
    if (keeper_.hasCards(client)) {
        // The right is for all cards, so it covers those that have become free since it was granted.
        give(call);
        return;
    }
    if (!keeper_.hasCardFor(client)) {
        require(sd_bus_reply_method_return(call, bus::kClaim.answer, bus::textOf(bus::ClaimAnswer::granted)),
                "The answer could not be sent");
        return;
    }
    ask(call, mayAsk != 0);
}

void Agent::ask(sd_bus_message* call, bool mayAsk) {
    const std::string client = sd_bus_message_get_sender(call);
    const uid_t user = userOf(call);
    // A new claim replaces an earlier one that has not been answered.
    clients_.erase(client);
    const auto ofUser =
        std::ranges::count_if(clients_, [&](const auto& entry) { return entry.second.user == user; });
    if (clients_.size() >= kMostClients || ofUser >= kMostClientsOfAUser) {
        throw files::UserError(
            "Too many programs are asking for the cards. Quit VUpdater wherever else it is open, or "
            "answer its question for the password.");
    }
    std::shared_ptr<sd_bus_message> kept(sd_bus_message_ref(call), sd_bus_message_unref);
    auto question = std::make_unique<Question>(
        connection_, client, mayAsk,
        [this, kept](auto answer, const std::string& reason) { answerClaim(kept.get(), answer, reason); });
    clients_.emplace(
        client,
        Client{
            .user = user, .question = std::move(question), .lock = nullptr, .scope = nullptr, .given = {}});
}

void Agent::answerClaim(sd_bus_message* call, std::optional<bus::ClaimAnswer> answer,
                        const std::string& reason) {
    const std::string client = sd_bus_message_get_sender(call);
    const std::string who = client + ", user " + std::to_string(clients_.at(client).user);
    clients_.at(client).question.reset();
    if (!answer) {
        const std::string explanation = "polkit does not answer (" + reason +
                                        "). An administrator can restart it with: systemctl restart polkit";
        files::say(who + ": " + explanation);
        sd_bus_reply_method_errorf(call, SD_BUS_ERROR_FAILED, "%s", explanation.c_str());
    } else if (*answer != bus::ClaimAnswer::granted) {
        files::say(who + ": The cards may not be used: " + bus::textOf(*answer) + ".");
        sd_bus_reply_method_return(call, bus::kClaim.answer, bus::textOf(*answer));
    } else {
        try {
            give(call);
        } catch (const files::UserError& error) {
            files::say(who + ": " + error.what());
            sd_bus_reply_method_errorf(call, SD_BUS_ERROR_FAILED, "%s", error.what());
        }
    }
    if (!keeper_.hasCards(client)) {
        clients_.erase(client);
    }
    setTimer();
}

void Agent::give(sd_bus_message* call) {
    const std::string client = sd_bus_message_get_sender(call);
    std::string addresses;
    for (const std::string& address : keeper_.claim(client)) {
        addresses += ' ' + address;
    }
    Client& known = clients_.at(client);
    if (!addresses.empty() && addresses != known.given) {
        files::say(client + ", user " + std::to_string(known.user) + ": Was given the cards at" + addresses +
                   ".");
    }
    known.given = addresses;
    require(sd_bus_reply_method_return(call, bus::kClaim.answer, bus::textOf(bus::ClaimAnswer::granted)),
            "The answer could not be sent");
}

void Agent::openRange(sd_bus_message* call) {
    const char* address = nullptr;
    uint32_t memoryRange = 0;
    require(sd_bus_message_read(call, bus::kOpenRange.arguments, &address, &memoryRange),
            "The arguments cannot be read");
    const pci::OpenedRange opened = keeper_.openRange(sd_bus_message_get_sender(call), address, memoryRange);
    require(sd_bus_reply_method_return(call, bus::kOpenRange.answer, opened.file.descriptor(),
                                       opened.offsetInPage, static_cast<uint64_t>(opened.bytes)),
            "The answer could not be sent");
}

void Agent::beginWrite(sd_bus_message* call) {
    const std::string client = sd_bus_message_get_sender(call);
    if (!keeper_.hasCards(client)) {
        // Without advice, because the client shows this beside its own and goes on with the write.
        throw files::UserError("The cards have not been claimed.");
    }
    keeper_.noteWrite(client);
    Client& known = clients_.at(client);
    known.lock = std::make_unique<WriteLock>(connection_, call);
    // After the lock, which matters more. The answer does not wait for systemd: whatever ends a session asks
    // its programs first, and then waits.
    known.scope = std::make_unique<WriteScope>(connection_, call, known.user);
}

void Agent::endWrite(sd_bus_message* call) {
    const auto client = clients_.find(sd_bus_message_get_sender(call));
    if (client != clients_.end() && client->second.lock) {
        client->second.lock.reset();
        files::say(client->first + ": The write has ended.");
    }
    require(sd_bus_reply_method_return(call, ""), "The answer could not be sent");
}

void Agent::letGo(sd_bus_message* call) {
    forget(sd_bus_message_get_sender(call));
    require(sd_bus_reply_method_return(call, ""), "The answer could not be sent");
}

void Agent::forget(const std::string& client) {
    clients_.erase(client);
    keeper_.giveUp(client);
}

int Agent::onNameLost(sd_bus_message* signal, void* agent, sd_bus_error* /*error*/) {
    auto* const self = static_cast<Agent*>(agent);
    const char* name = nullptr;
    if (sd_bus_message_read(signal, "s", &name) <= 0) {
        return 0;
    }
    if (!self->clients_.contains(name)) {
        self->keeper_.giveUp(name);  // it may have claimed cards in vain
        return 0;
    }
    files::say(std::string(name) + ": Left the bus.");
    self->forget(name);
    self->setTimer();
    return 0;
}

void Agent::setTimer() {
    isTakingBack_ = keeper_.takeBack();
    const bool isIdle = clients_.empty() && !isExiting_;
    const std::chrono::microseconds delay = isTakingBack_ ? kTakeBackInterval : idleTime_;
    sd_event_source_set_time_relative(timer_, static_cast<uint64_t>(delay.count()));
    sd_event_source_set_enabled(timer_, isTakingBack_ || isIdle ? SD_EVENT_ONESHOT : SD_EVENT_OFF);
}

int Agent::onTimer(sd_event_source* /*timer*/, uint64_t /*time*/, void* agent) {
    auto* const self = static_cast<Agent*>(agent);
    if (self->isTakingBack_) {
        self->setTimer();
    } else {
        self->exitWhenIdle();
    }
    return 0;
}

void Agent::exitWhenIdle() {
    files::say("No program needs the agent. It exits, and starts again when it is called.");
    isExiting_ = true;
    // In this order no call is lost: systemd starts an agent for those that come after the name has gone, and
    // what came before it is answered until the bus has let go of the name.
    sd_notify(0, "STOPPING=1");
    const auto onReleased = [](sd_bus_message*, void* agent, sd_bus_error*) {
        return sd_event_exit(static_cast<Agent*>(agent)->loop_, 0);
    };
    if (sd_bus_release_name_async(connection_, nullptr, bus::kAgent.owner, onReleased, this) < 0) {
        sd_event_exit(loop_, 0);
    }
}

}  // namespace agent
