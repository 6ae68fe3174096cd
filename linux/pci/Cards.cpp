#include "linux/pci/Cards.h"

#include <sys/mman.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <limits>
#include <optional>
#include <utility>

namespace pci {
namespace {

// A card's registers.
constexpr uint64_t kFewestBytes = 0x200;
// More than any card has, and no more than a program with 32-bit addresses can map.
constexpr uint64_t kMostBytes = 0x10000000;

constexpr char kGone[] =
    "The card could not be looked at. Check that it is still in the computer, then try again.";
constexpr char kLockedDown[] =
    "The kernel's lockdown keeps programs from the card's registers. Switch Secure Boot off in the "
    "computer's "
    "firmware settings until the card has been updated.";
constexpr char kNoRange[] =
    "The card has no memory range of at least 512 bytes. Check the line that names it in the configuration.";
constexpr char kNotPlaced[] =
    "The computer has given the card's registers no addresses. Put the card into another slot.";
constexpr char kBusMastering[] =
    "The card's bus mastering cannot be switched off. Switch the computer off and on, then try again.";
constexpr char kMemoryDecoding[] =
    "The card's memory decoding cannot be switched on. Switch the computer off and on, then try again.";
constexpr char kInUse[] = "Another program uses the card. Quit that program, then try again.";
constexpr char kSimulatedBesideReal[] =
    "It is a simulated card, and this computer has a real one. Remove the line of one of them from the "
    "configuration.";
constexpr char kNotClaimed[] = "The card must be claimed before it is opened.";

// The BAR that is a memory range; nothing if there is none.
std::optional<std::size_t> barOf(const CardRule& rule, const Resources& resources, uint32_t memoryRange) {
    if (const auto bar = rule.bars[memoryRange]) {
        return resources[*bar].isMemory() ? std::optional<std::size_t>(*bar) : std::nullopt;
    }
    uint32_t earlier = 0;
    for (std::size_t bar = 0; bar < kBars; ++bar) {
        if (resources[bar].isMemory() && earlier++ == memoryRange) {
            return bar;
        }
    }
    return std::nullopt;
}

// BARs are powers of two and lie at multiples of their size, so that a small one is within a page. The kernel
// maps too few pages of any other.
bool isAligned(const Resource& range) {
    return std::has_single_bit(range.bytes()) && range.first % range.bytes() == 0;
}

std::string rangeRefusal(const PciBus& bus, const std::string& address, const Resource& range) {
    if (range.bytes() < kFewestBytes) {
        return kNoRange;
    }
    if (!range.isPlacedMemory() || !isAligned(range)) {
        return kNotPlaced;
    }
    const auto neighbour = bus.neighbour(address, range);
    if (!neighbour) {
        return "";
    }
    return neighbour->isKnown
               ? "The card's registers are in one page of memory with those of the device " +
                     neighbour->address + ". Put the card into another slot, or take the other device out."
               : "It could not be found out whether the device " + neighbour->address +
                     " is in one page of memory with the card. Take that device out, then try again.";
}

// The rule for a device as it is now.
const CardRule* ruleFor(const PciDevice& device, const CardRules& rules) {
    const auto identifiers = device.identifiers();
    const auto subsystem = device.subsystem();
    return identifiers && subsystem ? rules.find(*identifiers, *subsystem) : nullptr;
}

// Finds out what only an attempt tells: a kernel that is locked down or whose driver owns the range.
void tryMapping(const files::OpenFile& file) {
    void* const page = ::mmap(nullptr, pageBytes(), PROT_READ | PROT_WRITE, MAP_SHARED, file.descriptor(), 0);
    if (page != MAP_FAILED) {
        ::munmap(page, pageBytes());
        return;
    }
    throw files::UserError(errno == EPERM ? kLockedDown : kGone);
}

}  // namespace

Cards::~Cards() {
    for (const auto& [address, claim] : claims_) {
        undo(claim);
    }
}

// Why a device with this rule cannot be used, whoever asks.
std::string Cards::refusal(const PciDevice& device, const CardRule& rule) const {
    if (bus_.isLockedDown()) {
        return kLockedDown;
    }
    if (const auto driver = device.driver()) {
        return "The driver \"" + *driver + "\" has the card. Unload that driver, then try again.";
    }
    const auto resources = device.resources();
    if (!resources) {
        return kGone;
    }
    if (!barOf(rule, *resources, 0)) {
        return kNoRange;
    }
    for (uint32_t range = 0; range < kMemoryRanges; ++range) {
        const auto bar = barOf(rule, *resources, range);
        std::string refusal = bar ? rangeRefusal(bus_, device.address(), (*resources)[*bar]) : "";
        const bool isNeeded = range == 0 || refusal != kNoRange;
        if (!refusal.empty() && isNeeded) {
            return refusal;
        }
    }
    return "";
}

std::vector<FoundCard> Cards::list(const std::string& client) const {
    std::vector<FoundCard> cards;
    for (const std::string& address : bus_.addresses()) {
        const auto device = bus_.device(address);
        const CardRule* const rule = device ? ruleFor(*device, rules_) : nullptr;
        if (rule == nullptr) {
            continue;
        }
        const auto claim = claims_.find(address);
        const auto failure = failures_.find(address);
        FoundCard card{.address = address,
                       .name = rule->name,
                       .location = bus_.location(address),
                       .isSimulated = rule->isSimulated,
                       .refusal = refusal(*device, *rule)};
        if (claim != claims_.end() && claim->second.client != client) {
            card.refusal = kInUse;
        } else if (card.refusal.empty() && failure != failures_.end()) {
            card.refusal = failure->second;
        }
        cards.push_back(std::move(card));
    }
    const bool hasReal =
        std::any_of(cards.begin(), cards.end(), [](const FoundCard& c) { return !c.isSimulated; });
    for (FoundCard& card : cards) {
        if (hasReal && card.isSimulated) {
            card.refusal = kSimulatedBesideReal;
        }
    }
    return cards;
}

// Why the card cannot be made ready; empty if it is. What has been done is noted in the claim either way.
std::string Cards::prepare(Claim& claim) {
    const PciDevice& device = claim.device;
    const Attributes& attributes = device.attributes();
    // A device that sleeps answers all reads with ones.
    if (attributes.text("power/control") == "auto\n") {
        claim.isWoken = attributes.write("power/control", "on");
    }
    if (!device.clearInCommand(PciDevice::kBusMastering)) {
        return kBusMastering;
    }
    const auto before = device.command();
    if (attributes.text("enable") == "0\n") {
        claim.isEnabled = attributes.write("enable", "1");
    }
    claim.isDecoding = before && (*before & PciDevice::kMemoryDecoding) == 0;
    return device.setInCommand(PciDevice::kMemoryDecoding) ? "" : kMemoryDecoding;
}

// Failures are left alone: the device may have gone.
void Cards::undo(const Claim& claim) {
    const Attributes& attributes = claim.device.attributes();
    if (claim.isDecoding) {
        static_cast<void>(claim.device.clearInCommand(PciDevice::kMemoryDecoding));
    }
    if (claim.isEnabled) {
        static_cast<void>(attributes.write("enable", "0"));
    }
    if (claim.isWoken) {
        static_cast<void>(attributes.write("power/control", "auto"));
    }
}

void Cards::claim(const std::string& client) {
    failures_.clear();
    for (const FoundCard& card : list(client)) {
        auto device = card.refusal.empty() ? bus_.device(card.address) : std::nullopt;
        if (!device) {
            continue;
        }
        const auto earlier = claims_.find(card.address);
        if (earlier != claims_.end() && earlier->second.device.identifiers()) {
            continue;
        }
        if (earlier != claims_.end()) {
            claims_.erase(earlier);  // of a device that has gone since
        }
        Claim claim{.client = client, .device = std::move(*device)};
        std::string failure = prepare(claim);
        if (failure.empty()) {
            claims_.emplace(card.address, std::move(claim));
        } else {
            undo(claim);
            failures_.emplace(card.address, std::move(failure));
        }
    }
}

OpenedRange Cards::openRange(const std::string& client, const std::string& address,
                             uint32_t memoryRange) const {
    const auto claim = claims_.find(address);
    if (claim == claims_.end() || claim->second.client != client) {
        throw files::UserError(kNotClaimed);
    }
    const PciDevice& device = claim->second.device;
    const CardRule* const rule = ruleFor(device, rules_);
    const auto resources = device.resources();
    if (rule == nullptr || !resources) {
        throw files::UserError(kGone);
    }
    if (std::string reason = refusal(device, *rule); !reason.empty()) {
        throw files::UserError(reason);
    }
    const auto bar = memoryRange < kMemoryRanges ? barOf(*rule, *resources, memoryRange) : std::nullopt;
    if (!bar || (*resources)[*bar].bytes() < kFewestBytes) {
        throw files::UserError(kNoRange);
    }
    if (!device.clearInCommand(PciDevice::kBusMastering)) {
        throw files::UserError(kBusMastering);
    }
    files::OpenFile file = device.attributes().openForMapping("resource" + std::to_string(*bar));
    tryMapping(file);
    // The kernel may have given the device other addresses in the meantime.
    if (device.resources() != resources) {
        throw files::UserError(kGone);
    }
    const Resource& range = (*resources)[*bar];
    return {.file = std::move(file),
            .offsetInPage = static_cast<uint32_t>(range.first % pageBytes()),
            .bytes = static_cast<uint32_t>(std::min(range.bytes(), kMostBytes))};
}

void Cards::release(const std::string& client) {
    for (auto claim = claims_.begin(); claim != claims_.end();) {
        if (claim->second.client == client) {
            undo(claim->second);
            claim = claims_.erase(claim);
        } else {
            ++claim;
        }
    }
}

}  // namespace pci
