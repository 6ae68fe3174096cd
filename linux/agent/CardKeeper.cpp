#include "linux/agent/CardKeeper.h"

#include <sys/file.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "files/FileError.h"
#include "files/PrintableText.h"
#include "linux/pci/CardRuleFiles.h"
#include "linux/pci/base/Refusals.h"

namespace agent {
namespace {

using std::chrono::steady_clock;

// Looking at every device takes milliseconds, and anybody may ask for it.
constexpr std::chrono::milliseconds kListLasts(100);

// A program unmaps the registers before it lets the cards go. One that ends, however it does, has let go of
// them milliseconds after the bus has noticed, even on a busy computer. One that still has them after this
// time lives on.
constexpr std::chrono::seconds kEndingLasts(5);

// In place of a client's name on the bus.
constexpr char kEarlierAgent[] = "An earlier agent";

void sayMayBeUsed(const std::string& address, const std::string& whyUnknown) {
    files::say(address + ": A program may still be using it. " + whyUnknown);
}

}  // namespace

CardKeeper::CardKeeper(Folders folders) : folders_(std::move(folders)) {
    readRules();
}

CardKeeper::~CardKeeper() {
    for (auto& [client, holding] : holdings_) {
        holding.givenUp = steady_clock::now();
    }
    if (takeBack()) {
        files::say("A program is still using a card, so the cards are left as they are.");
        // Its destructor would take the cards back.
        static_cast<void>(cards_.release());
    }
}

void CardKeeper::takeOver() {
    Holding holding{.probes = {}, .unprobed = {}, .givenUp = steady_clock::now(), .staysAwake = true};
    const std::vector<std::string> addresses = cards_->claimLeftBehind(kEarlierAgent);
    for (const std::string& address : addresses) {
        holding.unprobed.emplace(address, "");
        files::say(address + ": Taken over from an agent that was killed.");
    }
    if (!addresses.empty()) {
        // The program that had them may have begun a write since, of which no agent was told.
        cards_->keepAwake(kEarlierAgent);
        holdings_.emplace(kEarlierAgent, std::move(holding));
    }
}

void CardKeeper::readRules() {
    if (!holdings_.empty()) {
        return;
    }
    pci::CardRules read = pci::readCardRules(folders_.rules, folders_.rulesOwner);
    if (cards_ && read.rules == rules_.rules && read.complaints == rules_.complaints) {
        return;
    }
    for (const std::string& complaint : read.complaints) {
        files::say(complaint);
    }
    files::say("Kinds of cards named in " + folders_.rules.string() + ": " +
               std::to_string(read.rules.size()) + ".");
    rules_ = std::move(read);
    cards_ = std::make_unique<pci::Cards>(folders_.sys, rules_);
}

std::vector<pci::FoundCard> CardKeeper::seenBy(const std::string& client) {
    if (holdings_.contains(client)) {
        return cards_->list(client);
    }
    if (steady_clock::now() >= staleFrom_) {
        readRules();
        listed_ = cards_->list(client);
        staleFrom_ = steady_clock::now() + kListLasts;
    }
    return listed_;
}

std::vector<pci::FoundCard> CardKeeper::withRefusals(std::vector<pci::FoundCard> cards,
                                                     const std::string& client) const {
    const auto refusals = refusals_.find(client);
    for (pci::FoundCard& card : cards) {
        if (card.isUsable() && refusals != refusals_.end() && refusals->second.contains(card.address)) {
            card.refusal = refusals->second.at(card.address);
        }
    }
    return cards;
}

std::vector<pci::FoundCard> CardKeeper::list(const std::string& client) {
    return withRefusals(seenBy(client), client);
}

bool CardKeeper::hasCardFor(const std::string& client) {
    return std::ranges::any_of(seenBy(client), &pci::FoundCard::isUsable);
}

bool CardKeeper::hasCards(const std::string& client) const {
    const auto holding = holdings_.find(client);
    return holding != holdings_.end() && !holding->second.givenUp;
}

std::vector<std::string> CardKeeper::claim(const std::string& client) {
    readRules();
    std::map<std::string, Probes> added;
    for (const pci::FoundCard& card : cards_->list(client)) {
        if (card.isUsable() && !cards_->isHeld(card.address)) {
            added.emplace(card.address, cards_->rangeFiles(card.address));
        }
    }
    // Checked first: undoing a claim restores the cards, even while a program still uses one.
    if (std::ranges::any_of(added, [](const auto& entry) { return isInUse(entry.second); })) {
        throw files::UserError(pci::refusals::kStillInUse);
    }
    staleFrom_ = {};
    refusals_[client] = cards_->claim(client);
    std::vector<std::string> addresses;
    for (const pci::FoundCard& card : withRefusals(cards_->list(client), client)) {
        if (card.isUsable()) {
            addresses.push_back(card.address);
        } else {
            files::say(card.address + ": " + card.refusal);
        }
    }
    if (!addresses.empty()) {
        // The earlier probes stay: what the client had before may still be mapped, even if it is refused now.
        Holding& holding = holdings_[client];
        holding.givenUp.reset();
        holding.staysAwake = false;
        for (const std::string& address : addresses) {
            std::ranges::move(added[address], std::back_inserter(holding.probes));
        }
    }
    return addresses;
}

pci::OpenedRange CardKeeper::openRange(const std::string& client, const std::string& address,
                                       uint32_t memoryRange) {
    if (!hasCards(client)) {
        throw files::UserError(pci::refusals::kNotClaimed);
    }
    pci::OpenedRange opened = cards_->openRange(client, address, memoryRange);
    // Shared, because a client may open a range more than once.
    if (flock(opened.file.descriptor(), LOCK_SH | LOCK_NB) != 0) {
        throw files::FileError(address, "could not be locked", errno);
    }
    return opened;
}

void CardKeeper::giveUp(const std::string& client) {
    refusals_.erase(client);
    // A program that is started after this one has ended sees what has changed meanwhile.
    staleFrom_ = {};
    const auto holding = holdings_.find(client);
    if (holding != holdings_.end()) {
        holding->second.givenUp = holding->second.givenUp.value_or(steady_clock::now());
        takeBack();
    }
}

bool CardKeeper::takeBack() {
    bool isSomethingLeft = false;
    for (auto entry = holdings_.begin(); entry != holdings_.end();) {
        auto& [client, holding] = *entry;
        openProbes(holding);
        if (!holding.givenUp || !holding.unprobed.empty() || isInUse(holding.probes)) {
            isSomethingLeft |= holding.givenUp.has_value();
            keepAwakeIfUsedOn(client, holding);
            ++entry;
            continue;
        }
        staleFrom_ = {};
        cards_->release(client);
        files::say(client + ": The cards were taken back.");
        entry = holdings_.erase(entry);
    }
    return isSomethingLeft;
}

void CardKeeper::keepAwakeIfUsedOn(const std::string& client, Holding& holding) {
    if (holding.givenUp && !holding.staysAwake && steady_clock::now() >= *holding.givenUp + kEndingLasts) {
        holding.staysAwake = true;
        cards_->keepAwake(client);
        files::say(client + ": It goes on using a card, perhaps to write, so its cards will stay awake.");
    }
}

void CardKeeper::openProbes(Holding& holding) const {
    for (auto entry = holding.unprobed.begin(); entry != holding.unprobed.end();) {
        auto& [address, failure] = *entry;
        try {
            std::ranges::move(cards_->rangeFiles(address), std::back_inserter(holding.probes));
            entry = holding.unprobed.erase(entry);
        } catch (const files::UserError& error) {
            if (failure != error.what()) {
                failure = error.what();
                sayMayBeUsed(address, failure);
            }
            ++entry;
        }
    }
}

bool CardKeeper::isInUse(const Probes& probes) {
    return std::ranges::any_of(probes, [](const files::OpenFile& probe) {
        const bool isLocked = flock(probe.descriptor(), LOCK_EX | LOCK_NB) != 0;
        flock(probe.descriptor(), LOCK_UN);
        return isLocked;
    });
}

}  // namespace agent
