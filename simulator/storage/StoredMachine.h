#pragma once

// A machine as machine.json holds it: everything but the PROMs' cells, which have files of their own.
//
// The text is a JSON object. "format" changes when an older program would misread the rest. Unknown fields
// are refused, since saving would lose them.

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
    // What a card loses without power.
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
        std::optional<Powered> powered;  // present if the machine is on
        std::vector<Fault> faults;
        std::optional<RecordingRequest> recording;
    };

    bool on = false;
    uint64_t accesses = 0;
    // Loaded drivers are stored only while the machine is on. A text without drivers means that the resident
    // driver is installed and that drivers have no faults.
    Drivers drivers;
    std::vector<Ledger::Entry> ledger;
    std::vector<Card> cards;
};

// The machine's state. The caller fills in the names of the PROM files.
StoredMachine describeMachine(const Machine& machine);

// Gives a new machine the stored state. Calls cellsOf for each card's cells, then onAdded, where the caller
// can attach a file, before the card continues. If one of them throws, the machine has the cards before that
// one and is of no use.
void restoreMachine(Machine& machine, const StoredMachine& stored,
                    const std::function<PromCells(const StoredMachine::Card&)>& cellsOf,
                    const std::function<void(Card&, const StoredMachine::Card&)>& onAdded);

// The text of machine.json. What is not UTF-8 in a name is replaced, so that it cannot keep a machine from
// being saved.
std::string encodeMachine(const StoredMachine& machine);

// Throws files::UserError if the text is not a machine; its sentence follows the file's name and a colon.
StoredMachine decodeMachine(std::string_view text);

}  // namespace simulator
