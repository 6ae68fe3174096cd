#pragma once

// What is said if the agent does not do what it is asked to. Each says what helps.

#include <string>

#include "linux/bus/Bus.h"

namespace client {

// Of an agent that is there and does not answer.
std::string whyTheAgentIsSilent();

// Of a bus that could not be opened, with the negative result of the attempt.
std::string whyNoBus(int result);

// Of a call that failed, with the agent's or the bus's error, or without one a negative result.
std::string whyTheAgentFails(const bus::Error& error, int result);

}  // namespace client
