#pragma once

// A host between the player and another one, with little patience for waits: they pass in leaps, and end the
// run when there are too many of them. A damaged image can ask for half an hour.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/Host.h"

class ImpatientHost final : public Host {
  public:
    // Thrown out of a load.
    struct OutOfTime {};

    // `leap` is called, beside the load itself, for each load of a wait longer than any settling of a signal.
    ImpatientHost(Host& host, std::function<void()> leap) : host_(host), leap_(std::move(leap)) {
        InstallHost(this);
    }
    ~ImpatientHost() override { InstallHost(nullptr); }

    // How many more loads there may be.
    uint64_t loadsLeft = 0;

    std::filesystem::path bundleDirectory() override { return host_.bundleDirectory(); }
    std::vector<uint64_t> servicesOfClass(std::string_view name) override {
        return host_.servicesOfClass(name);
    }
    std::optional<uint32_t> openService(uint64_t service) override { return host_.openService(service); }
    bool closeConnection(uint32_t connection) override { return host_.closeConnection(connection); }
    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override {
        return host_.mapMemory(connection, memoryType);
    }
    std::optional<std::size_t> callMethod(uint32_t connection, uint32_t method,
                                          std::span<uint8_t> reply) override {
        return host_.callMethod(connection, method, reply);
    }
    uint32_t loadWord(const uint32_t* address) override {
        if (loadsLeft-- == 0)
            throw OutOfTime();
        if (++loadsSinceStore_ > kLoadsBeforeLeaping)
            leap_();
        return host_.loadWord(address);
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        loadsSinceStore_ = 0;
        host_.storeWord(address, word);
    }
    std::vector<Process> processes() override { return host_.processes(); }
    bool deliverShutDownEvent(uint64_t process) override { return host_.deliverShutDownEvent(process); }
    RightAnswer askForAdministratorRight() override { return host_.askForAdministratorRight(); }
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override {
        return host_.runPrivilegedTool(tool, arguments);
    }
    void sleepSeconds(uint32_t seconds) override { host_.sleepSeconds(seconds); }

  private:
    static constexpr uint64_t kLoadsBeforeLeaping = 64;

    Host& host_;
    std::function<void()> leap_;
    uint64_t loadsSinceStore_ = 0;
};
