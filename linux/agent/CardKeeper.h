#pragma once

// Which client has which cards. A card is taken back only when no program has its registers mapped any more
// (see pci::RangeLocks): restoring it may switch its memory off, which would ruin a write that is under way.

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "linux/pci/Cards.h"

namespace agent {

class CardKeeper {
  public:
    struct Folders {
        std::filesystem::path sys = "/sys";
        std::filesystem::path rules = "/etc/vupdater/cards.d";
        uid_t rulesOwner = 0;
    };

    explicit CardKeeper(Folders folders);
    CardKeeper(const CardKeeper&) = delete;
    CardKeeper& operator=(const CardKeeper&) = delete;
    // Leaves the cards alone if a program still uses one.
    ~CardKeeper();

    // The folder whose files name the cards.
    const std::filesystem::path& rulesFolder() const { return folders_.rules; }

    // Takes the cards over that an agent had given to somebody before it was killed, so that they are taken
    // back, too. They stay awake, because a write may have begun while no agent was there.
    void takeOver();

    // The cards as the client sees them: those of other clients are refused, and those that its latest claim
    // could not make ready. A client without cards sees changes on the bus and in the rules a moment late, so
    // that a program that asks continuously cannot delay others.
    std::vector<pci::FoundCard> list(const std::string& client);

    // Whether an agent, perhaps another than this one, has given the card to a program.
    bool isTaken(const std::string& address) const { return cards_->isReady(address); }

    // Whether there is a card that a claim might give to the client.
    bool hasCardFor(const std::string& client);
    // Gives the client all usable cards that it does not have yet, and returns the addresses of all that it
    // can use.
    std::vector<std::string> claim(const std::string& client);
    bool hasCards(const std::string& client) const;

    // A memory range of a card of the client's. Throws files::UserError.
    [[nodiscard]] pci::OpenedRange openRange(const std::string& client, const std::string& address,
                                             uint32_t memoryRange) const;

    // The client, which has cards, may write into them from now on, and into those that it claims later. They
    // stay awake even after they have been taken back. Those that others have changed are made ready again;
    // the journal says why if one cannot be.
    void noteWrite(const std::string& client);

    // The client no longer needs its cards.
    void giveUp(const std::string& client);
    // Takes back what was given up and is no longer used. A card that a program goes on using stays awake
    // afterwards: the program may write, and cannot tell the agent. Returns whether something is left for
    // another try.
    bool takeBack();

  private:
    using TextsByAddress = std::map<std::string, std::string>;

    struct Holding {
        std::optional<std::chrono::steady_clock::time_point> givenUp;
        bool staysAwake = false;
        TextsByAddress saidOfUse;
    };

    struct Refusals {
        // Why its latest claim could not make a card ready. The next claim may, so nobody else is told.
        TextsByAddress ofClaim;
        TextsByAddress said;
    };

    // The cards without what is known from claims that failed.
    std::vector<pci::FoundCard> seenBy(const std::string& client);
    std::vector<pci::FoundCard> withRefusals(std::vector<pci::FoundCard> cards,
                                             const std::string& client) const;
    // Reads the rules again while no client has cards, so that changed files take effect without a restart.
    void readRules();
    bool isInUse(const std::string& client, Holding& holding);
    void keepAwakeIfUsedOn(const std::string& client, const Holding& holding);

    Folders folders_;
    pci::CardRules rules_;
    std::unique_ptr<pci::Cards> cards_;
    std::map<std::string, Holding> holdings_;   // by client
    std::map<std::string, Refusals> refusals_;  // by client, until it leaves
    std::vector<pci::FoundCard> listed_;        // the latest list for clients without cards
    std::chrono::steady_clock::time_point staleFrom_;
};

}  // namespace agent
