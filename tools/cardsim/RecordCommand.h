#pragma once

// Recording a card's JTAG signals during the next run.

#include <string>

#include "simulator/jtag/Waveform.h"
#include "tools/cardsim/MachineArguments.h"

namespace cardsim {

// "the next run, from 0 to its end, into /tmp/identity.vcd"
[[nodiscard]] std::string describe(const simulator::RecordingRequest& request);

// Adds the subcommand record. The stream must outlive the parsing.
void addRecordCommand(CLI::App& program, std::ostream& out);

}  // namespace cardsim
