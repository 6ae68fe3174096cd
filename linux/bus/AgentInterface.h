#pragma once

// The agent as it appears on the system bus: all that it and its clients must agree on.

#include <optional>
#include <string_view>

#include "linux/bus/Bus.h"

namespace bus {

constexpr Object kAgent{"com.vornlabs.VUpdater.Agent", "/com/vornlabs/VUpdater/Agent",
                        "com.vornlabs.VUpdater.Agent"};

// One of its methods: its name, and the types of what it takes and answers, as the bus writes them.
struct Method {
    const char* name;
    const char* arguments;
    const char* answer;
};

// The computer's cards, for anybody who asks: of each its address, name and location, whether it is
// simulated, and the refusal, which is empty if it can be used.
constexpr Method kCards{"Cards", "", "a(sssbs)"};
constexpr const char* kCardTypes = kCards.answer + 1;  // of each card in that array

// Whether the user may be asked for a password. If the answer is ClaimAnswer::granted, all usable cards are
// the caller's until LetGo or its disconnection. A caller that has cards is given those that have become free
// since, and nobody is asked again.
constexpr Method kClaim{"Claim", "b", "s"};
constexpr Method kLetGo{"LetGo", "", ""};

// The address and the number of a memory range of a card of the caller's. Answers a descriptor of its pages,
// where in the first one it begins, and its bytes.
constexpr Method kOpenRange{"OpenRange", "su", "hut"};

// Takes the lock that keeps the computer on. The descriptor holds it, too, so the lock outlives the agent.
// The answer also says whether a scheduled shutdown was cancelled: 1 if so, 0 if none was scheduled, negative
// if that is unknown. If logind refuses because the computer is on its way to sleep or off, so does the
// agent, with logind's own error (see PowerLock.h). Until EndWrite, shutdowns that are scheduled later are
// cancelled, too. The caller's process is moved out of its user's session.
constexpr Method kBeginWrite{"BeginWrite", "", "hi"};
constexpr Method kEndWrite{"EndWrite", "", ""};

enum class ClaimAnswer {
    granted,
    dismissed,  // the user closed the question for a password
    refused,
    nobodyToAsk  // a password is needed, but the user must not be asked for it, or has no desktop that asks
};

// On the bus an answer is a text. Nothing if the text is not an answer.
const char* textOf(ClaimAnswer answer);
std::optional<ClaimAnswer> claimAnswerOf(std::string_view text);

}  // namespace bus
