#pragma once

// The cards that this computer's programs may use: which there are, who has them, and their memory ranges.
//
// Devices come and go and drivers are loaded at any time, so everything is looked at again in each call.

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "files/OpenFile.h"
#include "files/UserError.h"
#include "linux/pci/CardRules.h"
#include "linux/pci/PciBus.h"

namespace pci {

struct FoundCard {
    std::string address;   // on the bus, such as 0000:05:01.0
    std::string name;      // from the rules
    std::string location;  // such as "PCI slot 3"; else the address
    bool isSimulated = false;
    std::string refusal;  // why it cannot be used, and what to do; empty if it can. ASCII, as all these texts
};

// One of a card's memory ranges: an open file whose pages, mapped from offset 0, hold it.
struct OpenedRange {
    files::OpenFile file;
    uint32_t offsetInPage;  // where the range begins, less than a page
    uint32_t bytes;         // at least 0x200
};

class Cards {
  public:
    // The folder is /sys, or in tests a made-up one.
    Cards(const std::filesystem::path& sys, CardRules rules) : bus_(sys), rules_(std::move(rules)) {}
    Cards(const Cards&) = delete;
    Cards& operator=(const Cards&) = delete;
    // Releases everything.
    ~Cards();

    // The cards in the order of their addresses, as the client sees them: those that another client has are
    // refused. Changes nothing, so it needs no rights. A client is any text that stays the same.
    std::vector<FoundCard> list(const std::string& client) const;

    // Gives the client all usable cards, ready for their registers to be mapped: awake, with memory decoding
    // on and bus mastering off. Afterwards list() shows its cards without a refusal; it has none if all are
    // refused.
    void claim(const std::string& client);

    // Opens memory range 0 or 1 of a card of the client's. Throws files::UserError, one sentence, if the card
    // is not the client's, the range is none, or the card can no longer be used.
    OpenedRange openRange(const std::string& client, const std::string& address, uint32_t memoryRange) const;

    // Takes back all cards of the client, and leaves each as it was before the claim.
    void release(const std::string& client);

  private:
    struct Claim {
        std::string client;
        PciDevice device;  // opened once, so that the undoing meets no other device at this address
        bool isWoken = false;
        bool isEnabled = false;
        bool isDecoding = false;
    };

    static std::string prepare(Claim& claim);
    static void undo(const Claim& claim);
    std::string refusal(const PciDevice& device, const CardRule& rule) const;

    PciBus bus_;
    CardRules rules_;
    std::map<std::string, Claim> claims_;          // by address
    std::map<std::string, std::string> failures_;  // by address: why the last claim did not get a card
};

}  // namespace pci
