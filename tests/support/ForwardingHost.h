#pragma once

// A host that forwards every call to another host. Tests override single functions. It is installed while it
// exists.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Host.h"

class ForwardingHost : public Host {
  public:
    explicit ForwardingHost(Host& host) : host_(host) { InstallHost(this); }
    ~ForwardingHost() override { InstallHost(nullptr); }

    std::filesystem::path bundleDirectory() override { return host_.bundleDirectory(); }
    std::vector<uint64_t> servicesOfClass(std::string_view className) override {
        return host_.servicesOfClass(className);
    }
    std::optional<uint32_t> openService(uint64_t service) override { return host_.openService(service); }
    bool closeConnection(uint32_t connection) override { return host_.closeConnection(connection); }
    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override {
        const auto range = host_.mapMemory(connection, memoryType);
        if (range && memoryType == 0) {
            base_ = static_cast<const uint32_t*>(range->base);
        }
        return range;
    }
    std::optional<std::size_t> callMethod(uint32_t connection, uint32_t method,
                                          std::span<uint8_t> reply) override {
        return host_.callMethod(connection, method, reply);
    }
    uint32_t loadWord(const uint32_t* address) override { return host_.loadWord(address); }
    void storeWord(uint32_t* address, uint32_t word) override { host_.storeWord(address, word); }
    std::vector<Process> processes() override { return host_.processes(); }
    bool deliverShutDownEvent(uint64_t process) override { return host_.deliverShutDownEvent(process); }
    RightAnswer askForAdministratorRight() override { return host_.askForAdministratorRight(); }
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override {
        return host_.runPrivilegedTool(tool, arguments);
    }
    void sleepSeconds(uint32_t seconds) override { host_.sleepSeconds(seconds); }

  protected:
    // The offset in bytes within the most recently mapped registers.
    uint32_t offsetOf(const uint32_t* address) const { return static_cast<uint32_t>(address - base_) * 4; }

  private:
    Host& host_;
    const uint32_t* base_ = nullptr;
};
