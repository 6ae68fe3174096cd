#pragma once

// A host between the updater and another host, which counts register accesses and can falsify what the
// updater reads.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/ForwardingHost.h"

class MeddlingHost final : public ForwardingHost {
  public:
    using ForwardingHost::ForwardingHost;

    // Loads and stores so far.
    uint64_t loads = 0;
    uint64_t stores = 0;

    // The tools run with the administrator's rights, with their arguments, and the sleeps in seconds, in
    // order.
    std::vector<std::string> privileged;
    std::set<std::string> toolsThatDoNotStart;
    // Called before each tool.
    std::function<void()> beforeTool;

    // Replaces the other host's processes.
    std::optional<std::vector<Process>> processList;
    std::vector<uint64_t> shutDownEvents;  // the processes that received one

    // How many more times the program finds its bundle.
    int bundleFinds = std::numeric_limits<int>::max();

    // The connections that the updater has not closed.
    std::set<uint32_t> openConnections;
    // Closes them. Returns how many of them had not ended by themselves.
    std::size_t closeConnections() {
        return static_cast<std::size_t>(std::ranges::count_if(
            std::exchange(openConnections, {}),
            [this](uint32_t connection) { return ForwardingHost::closeConnection(connection); }));
    }

    // Called before each attempt to open a service.
    std::function<void()> beforeOpening;

    // Returns a load's result from its offset in the window and the true word; null changes nothing.
    std::function<uint32_t(uint32_t offset, uint32_t word)> falsifyLoad;

    std::filesystem::path bundleDirectory() override {
        return bundleFinds-- > 0 ? ForwardingHost::bundleDirectory() : std::filesystem::path();
    }
    std::optional<uint32_t> openService(uint64_t service) override {
        if (beforeOpening) {
            beforeOpening();
        }
        const auto connection = ForwardingHost::openService(service);
        if (connection) {
            openConnections.insert(*connection);
        }
        return connection;
    }
    bool closeConnection(uint32_t connection) override {
        openConnections.erase(connection);
        return ForwardingHost::closeConnection(connection);
    }
    uint32_t loadWord(const uint32_t* address) override {
        ++loads;
        const uint32_t word = ForwardingHost::loadWord(address);
        return falsifyLoad ? falsifyLoad(offsetOf(address), word) : word;
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        ++stores;
        ForwardingHost::storeWord(address, word);
    }
    std::vector<Process> processes() override {
        return processList ? *processList : ForwardingHost::processes();
    }
    bool deliverShutDownEvent(uint64_t process) override {
        shutDownEvents.push_back(process);
        return ForwardingHost::deliverShutDownEvent(process);
    }
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override {
        privileged.push_back(tool);
        for (const std::string& argument : arguments) {
            privileged.back() += " " + argument;
        }
        if (beforeTool) {
            beforeTool();
        }
        return !toolsThatDoNotStart.contains(tool) && ForwardingHost::runPrivilegedTool(tool, arguments);
    }
    void sleepSeconds(uint32_t seconds) override {
        privileged.push_back("sleep " + std::to_string(seconds));
        ForwardingHost::sleepSeconds(seconds);
    }
};
