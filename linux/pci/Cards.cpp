#include "linux/pci/Cards.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "linux/pci/MemoryWindow.h"
#include "linux/pci/base/Refusals.h"

namespace pci {
namespace {

// More than any card has, and little enough for a program with 32-bit addresses.
constexpr uint64_t kMostBytes = 0x10000000;

// Finds out what only an attempt shows: a kernel that is locked down, or that keeps the range for itself.
void tryMapping(const files::OpenFile& file) {
    void* const page = ::mmap(nullptr, pageBytes(), PROT_READ | PROT_WRITE, MAP_SHARED, file.descriptor(), 0);
    if (page == MAP_FAILED) {
        throw files::UserError(refusals::mapping(errno));
    }
    ::munmap(page, pageBytes());
}

void refuseSimulatedBesideReal(std::vector<FoundCard>& cards) {
    const bool hasReal = std::ranges::any_of(
        cards, [](const FoundCard& card) { return !card.isSimulated && card.refusal != refusals::kBridge; });
    for (FoundCard& card : cards) {
        if (hasReal && card.isSimulated) {
            card.refusal = refusals::kSimulatedBesideReal;
        }
    }
}

}  // namespace

const CardRule* Cards::ruleFor(const PciDevice& device) const {
    const auto identifiers = device.identifiers();
    const auto subsystem = device.subsystem();
    return identifiers && subsystem ? rules_.find(*identifiers, *subsystem) : nullptr;
}

// Why a device with this rule cannot be used, whoever asks.
std::string Cards::refusal(const PciDevice& device, const CardRule& rule) const {
    if (bus_.isLockedDown()) {
        return refusals::kLockedDown;
    }
    if (device.isBridge()) {
        return refusals::kBridge;
    }
    if (const auto driver = device.driver()) {
        return refusals::driver(*driver);
    }
    if (const auto driver = ReadyDevice::reservedFor(device)) {
        return refusals::reserved(*driver);
    }
    const auto resources = device.resources();
    if (!resources) {
        return refusals::kGone;
    }
    if (!windowOf(rule, *resources, 0)) {
        return refusals::kNoWindow;
    }
    for (uint32_t memoryRange = 0; memoryRange < kMemoryRanges; ++memoryRange) {
        const auto window = windowOf(rule, *resources, memoryRange);
        if (!window) {
            continue;
        }
        if (std::string refusal = refusalOf(*window, bus_, device.address()); !refusal.empty()) {
            return refusal;
        }
        if (!device.hasBar(window->bar)) {
            return refusals::mapping(ENOENT);
        }
    }
    // Whether a device that sleeps answers is seen when it is claimed, which wakes it.
    return device.command() || device.isAsleep() ? "" : refusals::kGone;
}

std::string Cards::refusalOfClaims(const std::string& address, const std::string& client) const {
    const auto claim = claims_.find(address);
    return claim != claims_.end() && claim->second.client != client ? refusals::kInUse : "";
}

std::vector<FoundCard> Cards::list(const std::string& client) const {
    std::vector<FoundCard> cards;
    for (const std::string& address : bus_.addresses()) {
        const auto device = bus_.device(address);
        const CardRule* const rule = device ? ruleFor(*device) : nullptr;
        if (rule == nullptr) {
            continue;
        }
        const std::string refusalOfDevice = refusal(*device, *rule);
        cards.push_back(
            {.address = address,
             .name = rule->name,
             .location = bus_.location(address),
             .isSimulated = rule->isSimulated,
             .refusal = refusalOfDevice.empty() ? refusalOfClaims(address, client) : refusalOfDevice});
    }
    refuseSimulatedBesideReal(cards);
    return cards;
}

bool Cards::isHeld(const std::string& address) const {
    const auto claim = claims_.find(address);
    return claim != claims_.end() && claim->second.ready->device().attributes().isStillThere();
}

bool Cards::isReady(const std::string& address) const {
    const auto device = bus_.device(address);
    return device && ReadyDevice::isLeftBehind(*device);
}

std::map<std::string, std::string> Cards::claim(const std::string& client) {
    std::map<std::string, std::string> refusals;
    for (const FoundCard& card : list(client)) {
        if (!card.isUsable() || isHeld(card.address)) {
            continue;
        }
        auto device = bus_.device(card.address);
        const CardRule* const rule = device ? ruleFor(*device) : nullptr;
        // From here on it is this device, so it has to be the one that was listed.
        if (rule == nullptr || rule->isSimulated != card.isSimulated || !refusal(*device, *rule).empty()) {
            continue;
        }
        if (std::string failure = take(client, std::move(*device)); !failure.empty()) {
            refusals.emplace(card.address, std::move(failure));
        }
    }
    return refusals;
}

std::string Cards::take(const std::string& client, PciDevice device) {
    try {
        const std::string address = device.address();
        RangeLocks locks(device);
        // Before anything is changed: undoing that later would ruin what the program does with the card.
        if (locks.isAnyHeld()) {
            return refusals::kStillInUse;
        }
        claims_.erase(address);  // undone before the device that has its address now is made ready
        auto ready = std::make_unique<ReadyDevice>(std::move(device));
        std::string failure = ready->refusal();
        if (failure.empty()) {
            claims_.emplace(address,
                            Claim{.client = client, .ready = std::move(ready), .locks = std::move(locks)});
        }
        return failure;
    } catch (const files::UserError& error) {
        return error.what();
    }
}

std::vector<std::string> Cards::claimLeftBehind(const std::string& client) {
    std::vector<std::string> addresses;
    for (const std::string& address : bus_.addresses()) {
        auto device = bus_.device(address);
        if (device && !claims_.contains(address) && ReadyDevice::isLeftBehind(*device)) {
            auto ready = std::make_unique<ReadyDevice>(std::move(*device));
            claims_.emplace(address, Claim{.client = client, .ready = std::move(ready), .locks = {}});
            addresses.push_back(address);
        }
    }
    return addresses;
}

OpenedRange Cards::openRange(const std::string& client, const std::string& address,
                             uint32_t memoryRange) const {
    const auto claim = claims_.find(address);
    if (claim == claims_.end() || claim->second.client != client) {
        throw files::UserError(refusals::kNotClaimed);
    }
    const PciDevice& device = claim->second.ready->device();
    const CardRule* const rule = ruleFor(device);
    const auto resources = device.resources();
    if (rule == nullptr || !resources) {
        throw files::UserError(refusals::kGone);
    }
    if (const std::string reason = refusal(device, *rule); !reason.empty()) {
        throw files::UserError(reason);
    }
    const auto window = windowOf(*rule, *resources, memoryRange);
    if (!window) {
        throw files::UserError(refusals::kNoWindow);
    }
    if (!device.command()) {
        throw files::UserError(refusals::kGone);
    }
    if (!device.clearInCommand(PciDevice::kBusMastering)) {
        throw files::UserError(refusals::kBusMastering);
    }
    files::OpenFile file = device.openBar(window->bar);
    tryMapping(file);
    // The kernel may have moved the device meanwhile.
    if (device.resources() != resources) {
        throw files::UserError(refusals::kGone);
    }
    lockRange(file);
    return {.file = std::move(file),
            .offsetInPage = static_cast<uint32_t>(window->resource.first % pageBytes()),
            .bytes = static_cast<uint32_t>(std::min(window->resource.bytes(), kMostBytes))};
}

bool Cards::hasAny(const std::string& client) const {
    return std::ranges::any_of(claims_, [&](const auto& claim) { return claim.second.client == client; });
}

Cards::Use Cards::use(const std::string& client) {
    Use use;
    for (auto& [address, claim] : claims_) {
        if (claim.client != client) {
            continue;
        }
        try {
            if (!claim.locks) {
                if (!claim.ready->device().attributes().isStillThere()) {
                    continue;  // nothing more can be found out
                }
                claim.locks.emplace(claim.ready->device());
            }
            use.isGoingOn |= claim.locks->isAnyHeld();
        } catch (const files::UserError& error) {
            use.unknown.emplace(address, error.what());
        }
    }
    return use;
}

std::map<std::string, std::string> Cards::keepAwake(const std::string& client) {
    std::map<std::string, std::string> refusals;
    for (auto& [address, claim] : claims_) {
        if (claim.client != client) {
            continue;
        }
        if (std::string failure = claim.ready->stayAwake(); !failure.empty()) {
            refusals.emplace(address, std::move(failure));
        }
    }
    return refusals;
}

void Cards::release(const std::string& client) {
    std::erase_if(claims_, [&](const auto& claim) { return claim.second.client == client; });
}

}  // namespace pci
