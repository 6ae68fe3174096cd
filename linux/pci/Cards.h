#pragma once

// The cards that this computer's programs may use: which there are, who has them, and their memory ranges.
//
// Devices come and go and drivers are loaded at any time, so every call looks at everything again.

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "files/UserError.h"
#include "linux/pci/CardRules.h"
#include "linux/pci/PciBus.h"
#include "linux/pci/RangeLocks.h"
#include "linux/pci/ReadyDevice.h"
#include "linux/pci/base/FoundCard.h"
#include "linux/pci/base/MemoryRange.h"

namespace pci {

class Cards {
  public:
    // The folder is /sys, or in tests a made-up one.
    Cards(const std::filesystem::path& sys, CardRules rules) : bus_(sys), rules_(std::move(rules)) {}
    Cards(const Cards&) = delete;
    Cards& operator=(const Cards&) = delete;

    // The cards in the order of their addresses, as the client sees them: those that another client has are
    // refused. Changes nothing and needs no rights. A client is any text that stays the same.
    std::vector<FoundCard> list(const std::string& client) const;

    // Whether a client has the device that is at the address now, not only one that was there before.
    bool isHeld(const std::string& address) const;

    // Whether a program has made the device ready and not put it back: this one, another, or one that was
    // killed.
    bool isReady(const std::string& address) const;

    // Gives the client all usable cards, ready for their registers to be mapped (see ReadyDevice). Returns
    // the refusals of those that could not be made ready or may still be in use by a program that had them
    // from an earlier agent, by address. What the client has stays the client's.
    std::map<std::string, std::string> claim(const std::string& client);

    // Gives the client, ready or not, the devices that a program had made ready before it was killed,
    // whatever the rules say now. Returns their addresses. Releasing them undoes what that program did.
    std::vector<std::string> claimLeftBehind(const std::string& client);

    // Opens memory range 0 or 1 of a card of the client's. Throws files::UserError with what to do if the
    // card is not the client's, has no such range or can no longer be used. The range stays mapped where it
    // is, whatever is released later.
    [[nodiscard]] OpenedRange openRange(const std::string& client, const std::string& address,
                                        uint32_t memoryRange) const;

    // Whether the client has a card, even one that is refused now.
    bool hasAny(const std::string& client) const;

    // What is known of programs that have registers of the client's cards open or mapped.
    struct Use {
        bool isGoingOn = false;
        // Of the other cards that a program may be using, why that is unknown, by address.
        std::map<std::string, std::string> unknown;
    };
    Use use(const std::string& client);

    // Keeps the client's cards awake even after they have been taken back. A card whose firmware is
    // incomplete is lost when its power goes, and the port above a card that may sleep can take it away.
    // Cards that others have changed since the claim are made ready again. Returns the refusals of those that
    // could not be, by address.
    [[nodiscard]] std::map<std::string, std::string> keepAwake(const std::string& client);

    // Takes back all cards of the client, and leaves each as it was before. The destructor does so for all.
    void release(const std::string& client);

  private:
    struct Claim {
        std::string client;
        std::unique_ptr<ReadyDevice> ready;
        std::optional<RangeLocks> locks;  // nothing until they could be looked at
    };

    const CardRule* ruleFor(const PciDevice& device) const;
    std::string refusal(const PciDevice& device, const CardRule& rule) const;
    // Gives the client the device. Returns the refusal; empty if the device is the client's now.
    [[nodiscard]] std::string take(const std::string& client, PciDevice device);
    std::string refusalOfClaims(const std::string& address, const std::string& client) const;

    PciBus bus_;
    CardRules rules_;
    std::map<std::string, Claim> claims_;  // by address
};

}  // namespace pci
