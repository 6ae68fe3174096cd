#pragma once

// A machine as machine.json holds it: everything but the PROMs' cells, which lie in files of their own.
//
// The text is a JSON object. "format" is 1 and changes when an older program would misread the rest; fields
// that this program does not know are refused, since saving would lose them.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/base/Ledger.h"
#include "simulator/jtag/FpgaConfiguration.h"
#include "simulator/jtag/JtagChain.h"
#include "simulator/jtag/Prom.h"
#include "simulator/machine/Card.h"
#include "simulator/machine/Drivers.h"
#include "simulator/machine/Machine.h"

namespace simulator {

// The value of "format".
constexpr int kMachineFormat = 1;

struct StoredMachine {
    // What a card remembers while it has power.
    struct Powered {
        std::optional<FpgaConfiguration> running;
        uint32_t jtagOutput = 0;
        JtagChain::State chain;
        JtagDevice::State promJtag;
        Prom::State prom;
        JtagDevice::State fpgaJtag;
    };

    struct Card {
        Board board;
        std::string promFile;            // a plain file name in the machine's directory
        std::optional<Powered> powered;  // present when the machine is on
        std::vector<Fault> faults;
        std::optional<RecordingRequest> recording;
    };

    bool on = false;
    uint64_t accesses = 0;
    // What is loaded is kept only while the machine is on. A text without drivers is a machine whose resident
    // driver is installed and that has no fault.
    Drivers drivers;
    std::vector<Ledger::Entry> ledger;
    std::vector<Card> cards;
};

// A machine as it is; the names of the PROM files are left to the caller.
StoredMachine describeMachine(const Machine& machine);

// Has a new machine carry on as a stored one. Each card is given its cells, and is then the caller's to
// attach a file to before it carries on.
void restoreMachine(Machine& machine, const StoredMachine& stored,
                    const std::function<PromCells(const StoredMachine::Card&)>& cellsOf,
                    const std::function<void(Card&, const StoredMachine::Card&)>& onAdded);

std::string encodeMachine(const StoredMachine& machine);

// Throws MachineError, in words to follow the file's name, when the text is no machine.
StoredMachine decodeMachine(std::string_view text);

}  // namespace simulator
