#include "linux/agent/CardKeeper.h"

#include <algorithm>
#include <utility>

#include "files/PrintableText.h"
#include "linux/pci/CardRuleFiles.h"
#include "linux/pci/base/Refusals.h"

namespace agent {
namespace {

using std::chrono::steady_clock;

// Looking at every device takes milliseconds, and anybody may ask for it, from as many connections as they
// like. So a list lasts nine times as long as it took, which leaves most of the time for others, but at most
// so long that nobody waits for a change to be seen.
constexpr int kTimesAListLasts = 9;
constexpr std::chrono::milliseconds kListLastsAtMost(100);

// A program unmaps the registers before it lets the cards go. One that ends, however it does, has let go of
// them milliseconds after the bus has noticed, even on a busy computer. One that still has them after this
// time lives on.
constexpr std::chrono::seconds kEndingLasts(5);

// In place of a client's name on the bus.
constexpr char kEarlierAgent[] = "An earlier agent";

void sayAbout(const std::string& address, const std::string& text) {
    files::say(address + ": " + text);
}

// Says the texts that are new, and remembers them all.
void sayNews(const std::map<std::string, std::string>& texts, std::map<std::string, std::string>& said) {
    for (const auto& [address, text] : texts) {
        const auto known = said.find(address);
        if (known == said.end() || known->second != text) {
            sayAbout(address, text);
        }
    }
    said = texts;
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
    for (const std::string& address : cards_->claimLeftBehind(kEarlierAgent)) {
        sayAbout(address, "Taken over from an agent that was killed.");
    }
    if (cards_->hasAny(kEarlierAgent)) {
        // The program that had them may have begun a write since, of which no agent was told.
        holdings_[kEarlierAgent].givenUp = steady_clock::now();
        noteWrite(kEarlierAgent);
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
        const auto begin = steady_clock::now();
        readRules();
        listed_ = cards_->list(client);
        const auto end = steady_clock::now();
        staleFrom_ =
            end + std::min<steady_clock::duration>(kTimesAListLasts * (end - begin), kListLastsAtMost);
    }
    return listed_;
}

std::vector<pci::FoundCard> CardKeeper::withRefusals(std::vector<pci::FoundCard> cards,
                                                     const std::string& client) const {
    const auto known = refusals_.find(client);
    for (pci::FoundCard& card : cards) {
        if (card.isUsable() && known != refusals_.end() && known->second.ofClaim.contains(card.address)) {
            card.refusal = known->second.ofClaim.at(card.address);
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
    staleFrom_ = {};
    Refusals& refusals = refusals_[client];
    refusals.ofClaim = cards_->claim(client);
    std::vector<std::string> addresses;
    TextsByAddress refused;
    for (const pci::FoundCard& card : withRefusals(cards_->list(client), client)) {
        if (!card.isUsable()) {
            refused.emplace(card.address, card.refusal);
        } else if (cards_->isHeld(card.address)) {
            addresses.push_back(card.address);
        }
    }
    sayNews(refused, refusals.said);
    if (cards_->hasAny(client)) {
        Holding& holding = holdings_[client];
        holding.givenUp.reset();
        if (holding.staysAwake) {
            noteWrite(client);
        }
    }
    return addresses;
}

pci::OpenedRange CardKeeper::openRange(const std::string& client, const std::string& address,
                                       uint32_t memoryRange) const {
    if (!hasCards(client)) {
        throw files::UserError(pci::refusals::kNotClaimed);
    }
    return cards_->openRange(client, address, memoryRange);
}

void CardKeeper::noteWrite(const std::string& client) {
    holdings_.at(client).staysAwake = true;
    for (const auto& [address, refusal] : cards_->keepAwake(client)) {
        sayAbout(address, refusal);
    }
}

void CardKeeper::giveUp(const std::string& client) {
    refusals_.erase(client);
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
        if (!holding.givenUp) {
            ++entry;
        } else if (isInUse(client, holding)) {
            isSomethingLeft = true;
            keepAwakeIfUsedOn(client, holding);
            ++entry;
        } else {
            staleFrom_ = {};
            cards_->release(client);
            files::say(client + ": The cards were taken back.");
            entry = holdings_.erase(entry);
        }
    }
    return isSomethingLeft;
}

bool CardKeeper::isInUse(const std::string& client, Holding& holding) {
    const pci::Cards::Use use = cards_->use(client);
    TextsByAddress unknown;
    for (const auto& [address, reason] : use.unknown) {
        unknown.emplace(address, "A program may still be using it. " + reason);
    }
    sayNews(unknown, holding.saidOfUse);
    return use.isGoingOn || !unknown.empty();
}

void CardKeeper::keepAwakeIfUsedOn(const std::string& client, const Holding& holding) {
    if (!holding.staysAwake && steady_clock::now() >= *holding.givenUp + kEndingLasts) {
        noteWrite(client);
        files::say(client + ": It goes on using a card, perhaps to write, so its cards will stay awake.");
    }
}

}  // namespace agent
