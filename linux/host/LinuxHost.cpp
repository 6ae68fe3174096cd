#include "linux/host/LinuxHost.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "files/PrintableText.h"
#include "linux/host/MappedWord.h"
#include "linux/pci/base/Refusals.h"
#include "platform/CardDriver.h"
#include "platform/ChildProcess.h"

namespace host {
namespace {

using std::chrono::steady_clock;

// Far from anything that could be a card's index.
constexpr uint64_t kFirstService = 0x1'0000'0001;

constexpr uint64_t kLoginProcess = 1;

// Reads of the registers' first word, in batches, when they are mapped. The fastest batch counts: one during
// which the processor did something else tells nothing about the bus.
constexpr int kTimedBatches = 30;
constexpr int kLoadsInABatch = 100;

// At most 2 ms on an ordinary bus, yet so many that reading the clock costs next to nothing.
constexpr uint32_t kLoadsBetweenLooks = 1000;

constexpr std::chrono::milliseconds kBetweenPauses{100};

void sayAbout(const pci::FoundCard& card, const std::string& sentence) {
    files::say(card.name + " (" + card.location + "): " + sentence);
}

void sayRefusals(const std::vector<pci::FoundCard>& cards) {
    for (const pci::FoundCard& card : cards) {
        if (!card.isUsable()) {
            sayAbout(card, card.refusal);
        }
    }
}

std::chrono::nanoseconds timeALoad(const uint32_t* word) {
    auto fastest = steady_clock::duration::max();
    for (int batch = 0; batch < kTimedBatches; ++batch) {
        const auto start = steady_clock::now();
        for (int load = 0; load < kLoadsInABatch; ++load) {
            mapped::load(word);
        }
        fastest = std::min(fastest, steady_clock::now() - start);
    }
    return fastest / kLoadsInABatch;
}

// A child that does nothing, since callers wait for the tool's end and must not get another child's.
bool startNothing() {
    return platform::startChild("/bin/true", {}).has_value();
}

// The tool runs with the user's own rights, which do not suffice for what another user has left in /tmp.
void sayIfAnothers(const std::string& path) {
    struct stat found {};
    if (::geteuid() != 0 && ::lstat(path.c_str(), &found) == 0 && found.st_uid != ::geteuid()) {
        files::say(
            path +
            " belongs to another user. Have it removed by that user or an administrator, then try again.");
    }
}

}  // namespace

std::vector<uint64_t> LinuxHost::servicesOfClass(std::string_view className) {
    if (className != card_driver::kServiceClass) {
        return {};
    }
    if (!hasTriedToClaim_) {
        hasTriedToClaim_ = true;
        const auto cards = agent_.cards();
        if (cards && std::ranges::any_of(*cards, &pci::FoundCard::isUsable)) {
            claim(false);
        }
    }
    return services_;
}

Host::RightAnswer LinuxHost::claim(bool mayAsk) {
    const RightAnswer answer = agent_.claim(mayAsk);
    if (answer != RightAnswer::granted) {
        return answer;
    }
    holdsRight_ = true;
    services_.clear();
    const auto cards = agent_.cards().value_or(std::vector<pci::FoundCard>());
    sayRefusals(cards);
    for (const pci::FoundCard& card : cards) {
        if (!card.isUsable()) {
            continue;
        }
        auto known = std::ranges::find(cards_, card.address, &pci::FoundCard::address);
        if (known == cards_.end()) {
            known = cards_.insert(known, card);
        } else {
            *known = card;
        }
        services_.push_back(kFirstService + static_cast<uint64_t>(known - cards_.begin()));
    }
    return answer;
}

void LinuxHost::letGo() {
    connections_.clear();
    choosePace();
    services_.clear();
    holdsRight_ = false;
    agent_.letGo();
}

std::optional<uint32_t> LinuxHost::openService(uint64_t service) {
    if (std::ranges::find(services_, service) == services_.end()) {
        return std::nullopt;
    }
    const uint32_t connection = nextConnection_++;
    const pci::FoundCard& card = cards_[static_cast<std::size_t>(service - kFirstService)];
    connections_.emplace(connection, Connection{.card = card, .ranges = {}, .isFast = false});
    return connection;
}

bool LinuxHost::closeConnection(uint32_t connection) {
    if (connections_.erase(connection) == 0) {
        return false;
    }
    choosePace();
    return true;
}

std::optional<RangeMapping> LinuxHost::mapRange(const pci::FoundCard& card, uint32_t memoryRange) {
    const auto range = agent_.openRange(card.address, memoryRange);
    if (!range) {
        return std::nullopt;
    }
    RangeMapping mapping(*range);
    if (mapping.base() == nullptr) {
        sayAbout(card, mapping.refusal());
        return std::nullopt;
    }
    return mapping;
}

std::optional<Host::MappedRange> LinuxHost::mapMemory(uint32_t connection, uint32_t memoryType) {
    const auto found = connections_.find(connection);
    if (found == connections_.end()) {
        return std::nullopt;
    }
    auto& [card, ranges, isFast] = found->second;
    auto range = ranges.find(memoryType);
    if (range == ranges.end()) {
        auto mapping = mapRange(card, memoryType);
        if (!mapping) {
            return std::nullopt;
        }
        range = ranges.emplace(memoryType, std::move(*mapping)).first;
        if (memoryType == 0 && !card.isSimulated) {
            const auto loadTime = timeALoad(reinterpret_cast<const uint32_t*>(range->second.base()));
            isFast = loadTime < kLeastLoadTime;
            loadTime_ = std::max(loadTime, kLeastLoadTime);
            choosePace();
        }
    }
    return MappedRange{range->second.base(), range->second.bytes()};
}

std::optional<std::size_t> LinuxHost::callMethod(uint32_t connection, uint32_t method,
                                                 std::span<uint8_t> reply) {
    const auto found = connections_.find(connection);
    if (found == connections_.end() || method != card_driver::kInformationMethod ||
        reply.size() < card_driver::kInformationBytes) {
        return std::nullopt;
    }
    card_driver::putInformation(reply, found->second.card.name, found->second.card.location);
    return card_driver::kInformationBytes;
}

void LinuxHost::choosePace() {
    isPaced_ = std::ranges::any_of(connections_, [](const auto& entry) { return entry.second.isFast; });
    loadsUntilLook_ = 1;
    lastLook_ = {};
}

void LinuxHost::makeUpForFastLoads() {
    const Clock::time_point end = lastLook_ + kLoadsBetweenLooks * kLeastLoadTime;
    if (isPaced_ || Clock::now() >= end) {
        return;
    }
    for (auto& [number, connection] : connections_) {
        connection.isFast = !connection.card.isSimulated;
    }
    choosePace();
    while (isPaced_ && Clock::now() < end) {
    }
}

uint32_t LinuxHost::loadWord(const uint32_t* address) {
    if (--loadsUntilLook_ == 0) {
        [[unlikely]] return loadAndLook(address);
    }
    return mapped::load(address);
}

void LinuxHost::storeWord(uint32_t* address, uint32_t word) {
    mapped::store(address, word);
}

uint32_t LinuxHost::loadAndLook(const uint32_t* address) {
    makeUpForFastLoads();
    const Clock::time_point start = Clock::now();
    const uint32_t word = mapped::load(address);
    Clock::time_point now = start;
    while (isPaced_ && now - start < kLeastLoadTime) {
        now = Clock::now();
    }
    loadsUntilLook_ = isPaced_ ? 1 : kLoadsBetweenLooks;
    lastLook_ = now;
    if (duringWaits_ && now - lastPause_ >= kBetweenPauses) {
        duringWaits_();
        // From its end, so that a slow display cannot take most of the time.
        lastLook_ = lastPause_ = Clock::now();
    }
    return word;
}

std::vector<Host::Process> LinuxHost::processes() {
    return {{kLoginProcess, "loginwindow"}};
}

bool LinuxHost::deliverShutDownEvent(uint64_t processSerialNumber) {
    return processSerialNumber == kLoginProcess && agent_.powerOff();
}

Host::RightAnswer LinuxHost::askForAdministratorRight() {
    const auto cards = agent_.cards();
    if (!cards || std::ranges::any_of(*cards, &pci::FoundCard::isUsable)) {
        return claim(true);
    }
    if (cards->empty()) {
        files::say(pci::refusals::noCard("/etc/vupdater/cards.d") +
                   " To check the configuration, run as root: /usr/libexec/vupdater/vupdater-agent --check");
    }
    sayRefusals(*cards);
    holdsRight_ = true;
    return RightAnswer::granted;
}

bool LinuxHost::runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) {
    if (tool == "/bin/rm") {
        sayIfAnothers(arguments.back());
        return platform::startChild(tool, arguments).has_value();
    }
    if (tool == "/usr/sbin/chown") {
        return startNothing();
    }
    if (tool == "/sbin/kextload") {
        return holdsRight_ && startNothing();
    }
    if (tool == "/sbin/kextunload") {
        letGo();
        return startNothing();
    }
    return false;
}

void LinuxHost::sleepSeconds(uint32_t seconds) {
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
}

}  // namespace host
