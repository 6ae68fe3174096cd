#include "linux/agent/Question.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include "files/UserError.h"

namespace agent {
namespace {

// What the administrator permits; its description in share/agent/ has the same name.
constexpr char kAction[] = "com.vornlabs.vupdater.use-cards";
constexpr uint32_t kAllowUserInteraction = 1;

// Whether the details of an answer, pairs of texts, say that the user closed the dialog.
bool isDismissed(sd_bus_message* answer) {
    bool isDismissed = false;
    const char* key = nullptr;
    const char* value = nullptr;
    sd_bus_message_enter_container(answer, SD_BUS_TYPE_ARRAY, "{ss}");
    while (sd_bus_message_read(answer, "{ss}", &key, &value) > 0) {
        isDismissed |= std::strcmp(key, "polkit.dismissed") == 0 && *value != '\0';
    }
    return isDismissed;
}

std::optional<bus::ClaimAnswer> answerIn(sd_bus_message* message) {
    int isAuthorized = 0;
    int isChallenge = 0;
    if (sd_bus_message_enter_container(message, SD_BUS_TYPE_STRUCT, "bba{ss}") < 0 ||
        sd_bus_message_read(message, "bb", &isAuthorized, &isChallenge) < 0) {
        return std::nullopt;
    }
    if (isAuthorized != 0) {
        return bus::ClaimAnswer::granted;
    }
    if (isDismissed(message)) {
        return bus::ClaimAnswer::dismissed;
    }
    return isChallenge != 0 ? bus::ClaimAnswer::nobodyToAsk : bus::ClaimAnswer::refused;
}

std::string nextId() {
    static uint64_t last = 0;
    return "claim-" + std::to_string(++last);
}

}  // namespace

Question::Question(sd_bus* connection, const std::string& client, bool mayAsk, Done done)
    : connection_(connection), id_(nextId()), done_(std::move(done)) {
    pulse_.emplace(connection, [this] { giveUp(); });
    const bus::Message call = bus::newCall(connection, bus::kPolkit, "CheckAuthorization");
    sd_bus_message_append(call.get(), "(sa{sv})", "system-bus-name", 1, "name", "s", client.c_str());
    sd_bus_message_append(call.get(), "sa{ss}us", kAction, 0, mayAsk ? kAllowUserInteraction : 0,
                          id_.c_str());
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_call_async(connection, &slot, call.get(), onAnswer, this, UINT64_MAX);
    if (result < 0) {
        throw files::UserError("polkit could not be asked: " + bus::Error().reason(result) + ".");
    }
    pending_.reset(slot);
}

Question::~Question() {
    withdraw();
}

void Question::withdraw() {
    pulse_.reset();
    if (pending_) {
        pending_.reset();
        const bus::Message call = bus::newCall(connection_, bus::kPolkit, "CancelCheckAuthorization");
        sd_bus_message_append(call.get(), "s", id_.c_str());
        sd_bus_message_set_expect_reply(call.get(), 0);
        sd_bus_send(connection_, call.get(), nullptr);
    }
}

void Question::giveUp() {
    const Done done = std::move(done_);
    withdraw();
    done(std::nullopt, bus::Error().reason(-ETIMEDOUT));
}

int Question::onAnswer(sd_bus_message* answer, void* question, sd_bus_error* /*error*/) {
    auto* const self = static_cast<Question*>(question);
    const bus::Slot answered = std::move(self->pending_);
    self->pulse_.reset();
    const Done done = std::move(self->done_);
    const std::optional<bus::ClaimAnswer> given =
        sd_bus_message_is_method_error(answer, nullptr) != 0 ? std::nullopt : answerIn(answer);
    const sd_bus_error* const error = sd_bus_message_get_error(answer);
    done(given, error != nullptr && error->message != nullptr ? error->message
                                                              : "the answer could not be understood");
    return 1;
}

}  // namespace agent
