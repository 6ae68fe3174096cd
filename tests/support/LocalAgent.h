#pragma once

// The agent's part of handing out this computer's cards, in this process.

#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "linux/host/CardAgent.h"
#include "linux/pci/Cards.h"

class LocalAgent : public CardAgent {
  public:
    LocalAgent(const std::filesystem::path& sys, pci::CardRules rules) : cards_(sys, std::move(rules)) {}

    std::optional<std::vector<Card>> cards() override {
        std::vector<Card> list;
        for (const pci::FoundCard& card : cards_.list("test")) {
            list.push_back({card.address, card.name, card.location, card.isSimulated, card.refusal});
        }
        return list;
    }
    Host::RightAnswer claim(bool /*mayAsk*/) override {
        cards_.claim("test");
        return Host::RightAnswer::granted;
    }
    void letGo() override { cards_.release("test"); }
    std::optional<Range> openRange(const std::string& address, uint32_t memoryType) override {
        const pci::OpenedRange range = cards_.openRange("test", address, memoryType);
        return Range{::dup(range.file.descriptor()), range.offsetInPage, range.bytes};
    }
    void beginWrite() override {}
    void endWrite() override {}
    bool powerOff() override { return false; }

  private:
    pci::Cards cards_;
};
