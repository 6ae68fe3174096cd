#pragma once

// A host with one card whose registers are plain memory: an access costs no more than the call of the host.
// TDO always reads 0.

#include <array>
#include <cstdint>

#include "platform/Host.h"

namespace benchmarks {

class PlainMemoryHost : public Host {
  public:
    // The card's registers, for gpRegisters.
    uint32_t* registers() { return registers_.data(); }

    uint32_t loadWord(const uint32_t* address) override { return *address; }
    void storeWord(uint32_t* address, uint32_t word) override { *address = word; }

    std::filesystem::path bundleDirectory() override { return {}; }
    std::vector<uint64_t> servicesOfClass(std::string_view) override { return {}; }
    std::optional<uint32_t> openService(uint64_t) override { return std::nullopt; }
    bool closeConnection(uint32_t) override { return false; }
    std::optional<MappedRange> mapMemory(uint32_t, uint32_t) override { return std::nullopt; }
    std::optional<std::size_t> callMethod(uint32_t, uint32_t, std::span<uint8_t>) override {
        return std::nullopt;
    }
    std::vector<Process> processes() override { return {}; }
    bool deliverShutDownEvent(uint64_t) override { return false; }
    RightAnswer askForAdministratorRight() override { return RightAnswer::denied; }
    bool runPrivilegedTool(const std::string&, const std::vector<std::string>&) override { return false; }
    void sleepSeconds(uint32_t) override {}

  private:
    std::array<uint32_t, 0x80> registers_{};
};

}  // namespace benchmarks
