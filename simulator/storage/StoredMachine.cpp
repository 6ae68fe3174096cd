#include "simulator/storage/StoredMachine.h"

namespace simulator {
namespace {

StoredMachine::Powered poweredState(const Card& card) {
    const JtagChain& chain = card.chain();
    return {.running = card.running(),
            .jtagOutput = card.jtagOutput(),
            .chain = chain.state(),
            .promJtag = chain.prom().jtagState(),
            .prom = chain.prom().state(),
            .fpgaJtag = chain.fpga().jtagState()};
}

void resume(Card& card, const StoredMachine::Powered& powered) {
    JtagChain& chain = card.chain();
    chain.restore(powered.chain);
    chain.prom().restoreJtag(powered.promJtag);
    chain.prom().restore(powered.prom);
    chain.fpga().restoreJtag(powered.fpgaJtag);
    card.resume(powered.running, powered.jtagOutput);
}

}  // namespace

StoredMachine describeMachine(const Machine& machine) {
    StoredMachine stored;
    stored.on = machine.isOn();
    stored.accesses = machine.accesses();
    stored.drivers = machine.drivers();
    stored.ledger = machine.ledger().entries();
    for (std::size_t index = 0; index < machine.cardCount(); ++index) {
        const Card& card = machine.card(index);
        stored.cards.push_back({.board = card.board(),
                                .promFile = "",
                                .powered = std::nullopt,
                                .faults = card.faults().all(),
                                .recording = card.recordingRequest()});
        if (stored.on) {
            stored.cards.back().powered = poweredState(card);
        }
    }
    return stored;
}

void restoreMachine(Machine& machine, const StoredMachine& stored,
                    const std::function<PromCells(const StoredMachine::Card&)>& cellsOf,
                    const std::function<void(Card&, const StoredMachine::Card&)>& onAdded) {
    machine.clock().resume(stored.accesses);
    machine.drivers() = stored.drivers;
    machine.ledger().restore(stored.ledger);
    for (const StoredMachine::Card& storedCard : stored.cards) {
        Card& card = machine.addCard(storedCard.board, cellsOf(storedCard));
        onAdded(card, storedCard);
        card.restoreFaults(storedCard.faults);
        card.requestRecording(storedCard.recording);
        if (storedCard.powered) {
            resume(card, *storedCard.powered);
        }
    }
    if (stored.on) {
        machine.resume();
    }
}

}  // namespace simulator
