#pragma once

// A host made of plain containers: services that open, map and answer as the test sets them, a memory window
// that records every access, and a process list.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/CardDriver.h"
#include "platform/Host.h"

class FakeHost : public Host {
  public:
    struct Card {
        bool opens = true;
        std::set<uint32_t> mappableRanges = {0, 1};
        bool answers = true;
        std::string name = "Card";
        std::string location = "Slot";
    };
    struct Access {
        bool isWrite;
        uint32_t offset;
        uint32_t word;
        bool operator==(const Access&) const = default;
    };

    static constexpr std::size_t windowWords = 0x80;
    static constexpr uint32_t range1Bytes = 0x40;

    FakeHost() { InstallHost(this); }
    ~FakeHost() override { InstallHost(nullptr); }

    std::filesystem::path bundle;
    std::vector<Card> cards;
    std::string serviceClass = card_driver::kServiceClass;
    // One window for all cards. The byte at a word's lowest address is the first of its hexadecimal digits.
    std::array<uint32_t, windowWords> window = {};
    std::vector<Access> accesses;
    std::vector<Process> processList;
    std::map<uint32_t, std::size_t> openConnections;
    RightAnswer rightAnswer = RightAnswer::granted;
    // The privileged tools that were run, with their arguments, and the sleeps in seconds, in order.
    std::vector<std::string> privileged;
    std::set<std::string> toolsThatDoNotStart;

    std::filesystem::path bundleDirectory() override { return bundle; }

    std::vector<uint64_t> servicesOfClass(std::string_view className) override {
        std::vector<uint64_t> services(className == serviceClass ? cards.size() : 0);
        for (std::size_t i = 0; i < services.size(); ++i) {
            services[i] = i;
        }
        return services;
    }

    std::optional<uint32_t> openService(uint64_t service) override {
        if (!cards.at(static_cast<std::size_t>(service)).opens) {
            return std::nullopt;
        }
        openConnections[++lastConnection_] = static_cast<std::size_t>(service);
        return lastConnection_;
    }

    bool closeConnection(uint32_t connection) override { return openConnections.erase(connection) != 0; }

    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override {
        if (!cards.at(openConnections.at(connection)).mappableRanges.contains(memoryType)) {
            return std::nullopt;
        }
        return MappedRange{window.data(), memoryType == 0 ? uint32_t{sizeof window} : range1Bytes};
    }

    std::optional<std::size_t> callMethod(uint32_t connection, uint32_t method,
                                          std::span<uint8_t> reply) override {
        const Card& card = cards.at(openConnections.at(connection));
        if (!card.answers || method != card_driver::kInformationMethod ||
            reply.size() != card_driver::kInformationBytes) {
            return std::nullopt;
        }
        std::fill(reply.begin(), reply.end(), uint8_t{0});
        std::copy(card.name.begin(), card.name.end(), reply.begin());
        std::copy(card.location.begin(), card.location.end(), reply.begin() + card_driver::kLocationAt);
        return reply.size();
    }

    uint32_t loadWord(const uint32_t* address) override {
        const auto index = static_cast<std::size_t>(address - window.data());
        accesses.push_back({false, static_cast<uint32_t>(index * 4), window.at(index)});
        return window.at(index);
    }

    void storeWord(uint32_t* address, uint32_t word) override {
        const auto index = static_cast<std::size_t>(address - window.data());
        accesses.push_back({true, static_cast<uint32_t>(index * 4), word});
        window.at(index) = word;
    }

    std::vector<Process> processes() override { return processList; }

    bool deliverShutDownEvent(uint64_t serialNumber) override {
        return std::any_of(processList.begin(), processList.end(),
                           [=](const Process& process) { return process.serialNumber == serialNumber; });
    }

    RightAnswer askForAdministratorRight() override { return rightAnswer; }

    // Only records the tool; no process is started.
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override {
        std::string run = tool;
        for (const std::string& argument : arguments) {
            run += " " + argument;
        }
        privileged.push_back(run);
        return !toolsThatDoNotStart.contains(tool);
    }

    void sleepSeconds(uint32_t seconds) override { privileged.push_back("sleep " + std::to_string(seconds)); }

  private:
    uint32_t lastConnection_ = 0x20000;
};
