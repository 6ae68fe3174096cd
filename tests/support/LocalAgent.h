#pragma once

// The agent's part of handing out this computer's cards, in this process.

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "linux/host/CardAgent.h"
#include "linux/pci/Cards.h"

class LocalAgent : public host::CardAgent {
  public:
    LocalAgent(const std::filesystem::path& sys, pci::CardRules rules) : cards_(sys, std::move(rules)) {}

    std::optional<std::vector<pci::FoundCard>> cards() override { return cards_.list("test"); }
    Host::RightAnswer claim(bool /*mayAsk*/) override {
        cards_.claim("test");
        return Host::RightAnswer::granted;
    }
    void letGo() override { cards_.release("test"); }
    std::optional<pci::OpenedRange> openRange(const std::string& address, uint32_t memoryRange) override {
        return cards_.openRange("test", address, memoryRange);
    }
    void beginWrite() override {}
    void endWrite() override {}
    bool powerOff() override { return false; }

  private:
    pci::Cards cards_;
};
