#pragma once

// A machine as cardsim prints it.

#include <iosfwd>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "simulator/machine/Machine.h"

namespace cardsim {

// As lines of text.
void showMachine(const simulator::Machine& machine, std::ostream& out);

// The same as a JSON object, which also says whether another program has the machine open. Values that the
// machine or a card does not have are null.
nlohmann::ordered_json machineJson(const simulator::Machine& machine, bool isInUse);

// A machine's drivers in one line, such as "resident" or "none; administrator refused".
std::string describe(const simulator::Drivers& drivers);

// A fault in one line, such as "page-misread, page 7, 3 times, at access 1000 (waiting)".
std::string describe(const simulator::Fault& fault);

// A pending recording, such as "the next run, from 0 to its end, into /tmp/identity.vcd".
std::string describe(const simulator::RecordingRequest& request);

// The words of `cardsim driver` for its settings, which JSON uses too.
template <typename Value>
using Words = std::map<std::string, Value>;
inline const Words<bool> kAdministratorWords{{"ask", false}, {"refuse", true}};
inline const Words<simulator::PrivateDriverFault> kPrivateDriverWords{
    {"works", simulator::PrivateDriverFault::none},
    {"does-not-load", simulator::PrivateDriverFault::doesNotLoad},
    {"publishes-nothing", simulator::PrivateDriverFault::publishesNothing}};

}  // namespace cardsim
