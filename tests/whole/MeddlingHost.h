#pragma once

// A host between the updater and another one, which counts register accesses and can falsify what the updater
// sees.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/Host.h"

class MeddlingHost final : public Host {
  public:
    explicit MeddlingHost(Host& host) : host_(host) { InstallHost(this); }
    ~MeddlingHost() override { InstallHost(nullptr); }

    // Loads and stores so far.
    uint64_t loads = 0;
    uint64_t stores = 0;

    // The tools that were run with the administrator's rights.
    std::vector<std::string> privilegedTools;

    // What a load returns, from its offset in the window and the true word; null leaves every word as it is.
    std::function<uint32_t(uint32_t offset, uint32_t word)> falsifyLoad;

    std::filesystem::path bundleDirectory() override { return host_.bundleDirectory(); }
    std::vector<uint64_t> servicesOfClass(std::string_view className) override {
        return host_.servicesOfClass(className);
    }
    std::optional<uint32_t> openService(uint64_t service) override { return host_.openService(service); }
    bool closeConnection(uint32_t connection) override { return host_.closeConnection(connection); }
    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override {
        const auto range = host_.mapMemory(connection, memoryType);
        if (range) {
            base_ = static_cast<const uint32_t*>(range->base);
        }
        return range;
    }
    std::optional<std::size_t> callMethod(uint32_t connection, uint32_t method,
                                          std::span<uint8_t> reply) override {
        return host_.callMethod(connection, method, reply);
    }
    uint32_t loadWord(const uint32_t* address) override {
        ++loads;
        const uint32_t word = host_.loadWord(address);
        return falsifyLoad ? falsifyLoad(static_cast<uint32_t>(address - base_) * 4, word) : word;
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        ++stores;
        host_.storeWord(address, word);
    }
    std::vector<Process> processes() override { return host_.processes(); }
    bool deliverShutDownEvent(uint64_t process) override { return host_.deliverShutDownEvent(process); }

    RightAnswer askForAdministratorRight() override { return host_.askForAdministratorRight(); }
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override {
        privilegedTools.push_back(tool);
        return host_.runPrivilegedTool(tool, arguments);
    }
    void sleepSeconds(uint32_t seconds) override { host_.sleepSeconds(seconds); }

  private:
    Host& host_;
    const uint32_t* base_ = nullptr;
};
