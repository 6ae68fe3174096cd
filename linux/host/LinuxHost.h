#pragma once

// This computer as the host of this process: its own cards, which their agent opens.
//
// If the agent grants the cards without a password, the updater sees them at once. Otherwise it sees none
// and does what it does to load its private driver: the administrator's right is the agent's claim, loading
// the driver makes the claimed cards appear, and unloading it lets them go. No tool but /bin/rm is run, and
// that with the user's own rights.

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "linux/host/CardAgent.h"
#include "linux/host/RangeMapping.h"
#include "linux/pci/base/FoundCard.h"
#include "platform/Host.h"

namespace host {

class LinuxHost final : public Host {
  public:
    // The agent must outlive the host. As long as loads follow each other, `duringWaits` is called about
    // every 100 ms, from a load: an erase is one wait of up to a minute and a half, in which the window would
    // seem dead. It must not access registers.
    explicit LinuxHost(CardAgent& agent, std::filesystem::path bundleDirectory,
                       std::function<void()> duringWaits = {})
        : agent_(agent), bundleDirectory_(std::move(bundleDirectory)), duringWaits_(std::move(duringWaits)) {}

    std::filesystem::path bundleDirectory() override { return bundleDirectory_; }
    // The claimed cards. The first call claims them if no password is needed.
    std::vector<uint64_t> servicesOfClass(std::string_view className) override;
    // A service stays the same card's for as long as the process lives. Nothing if that is not claimed now.
    std::optional<uint32_t> openService(uint64_t service) override;
    // Removes its mappings; a later access ends the program.
    bool closeConnection(uint32_t connection) override;
    // A range is mapped once for each connection, and only if it is large enough for the registers. A line on
    // standard error says why one cannot be mapped.
    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override;
    std::optional<std::size_t> callMethod(uint32_t connection, uint32_t method,
                                          std::span<uint8_t> reply) override;
    // The address must be in a mapped range; a card that is gone reads all ones. The updater counts on a load
    // taking at least a third of a microsecond. If the bus is faster than that, each load is made to last as
    // long; loads from a card that counts accesses instead of time are not.
    uint32_t loadWord(const uint32_t* address) override;
    void storeWord(uint32_t* address, uint32_t word) override;
    std::vector<Process> processes() override;
    bool deliverShutDownEvent(uint64_t processSerialNumber) override;
    // The agent's claim, which waits for a password if one is needed. If there is no usable card, there is
    // nothing to guard: lines on standard error say so, and the right is granted without asking.
    RightAnswer askForAdministratorRight() override;
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override;
    void sleepSeconds(uint32_t seconds) override;

    // How long a load takes from the card whose registers were mapped last, pacing included.
    std::chrono::nanoseconds loadTime() const { return loadTime_; }

  private:
    using Clock = std::chrono::steady_clock;

    // The third of a microsecond that the updater counts on.
    static constexpr std::chrono::nanoseconds kLeastLoadTime{334};

    struct Connection {
        pci::FoundCard card;
        std::map<uint32_t, RangeMapping> ranges;  // by their numbers
        bool isFast;                              // the bus is faster than the updater counts on
    };

    RightAnswer claim(bool mayAsk);
    void letGo();
    // The range; nothing, after a line on standard error, if it cannot be mapped.
    [[nodiscard]] std::optional<RangeMapping> mapRange(const pci::FoundCard& card, uint32_t memoryRange);
    [[gnu::noinline]] uint32_t loadAndLook(const uint32_t* address);
    void choosePace();
    // Paces loads from now on if those since the last look were too fast, and makes up for them: a processor
    // that is slow while the bus is timed makes the bus seem slow.
    void makeUpForFastLoads();

    CardAgent& agent_;
    std::filesystem::path bundleDirectory_;
    std::function<void()> duringWaits_;
    bool hasTriedToClaim_ = false;
    bool holdsRight_ = false;
    std::vector<pci::FoundCard> cards_;  // all that were ever claimed; a service's number is its place here
    std::vector<uint64_t> services_;     // those that are claimed now
    std::map<uint32_t, Connection> connections_;
    uint32_t nextConnection_ = 0x1'0001;
    // Loads until one looks at the clock. While loads are paced, every one does.
    uint32_t loadsUntilLook_ = 1;
    bool isPaced_ = false;
    std::chrono::nanoseconds loadTime_ = kLeastLoadTime;
    Clock::time_point lastLook_;  // the clock's beginning if no loads have followed it
    Clock::time_point lastPause_ = Clock::now();
};

}  // namespace host
