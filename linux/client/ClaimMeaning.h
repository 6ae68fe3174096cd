#pragma once

// What the agent's answer to a claim means for the updater, and what its user is told.

#include "linux/bus/AgentInterface.h"
#include "platform/Host.h"

namespace client {

struct ClaimMeaning {
    Host::RightAnswer right;
    const char* explanation;  // what to do; null if the claim was granted
};

ClaimMeaning meaningOf(bus::ClaimAnswer answer);

}  // namespace client
