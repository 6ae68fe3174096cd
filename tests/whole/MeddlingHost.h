#pragma once

// A host between the updater and another one, which counts register accesses and can falsify what the updater
// sees.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/ForwardingHost.h"

class MeddlingHost final : public ForwardingHost {
  public:
    using ForwardingHost::ForwardingHost;

    // Loads and stores so far.
    uint64_t loads = 0;
    uint64_t stores = 0;

    // The tools that were run with the administrator's rights.
    std::vector<std::string> privilegedTools;

    // What a load returns, from its offset in the window and the true word; null leaves every word as it is.
    std::function<uint32_t(uint32_t offset, uint32_t word)> falsifyLoad;

    uint32_t loadWord(const uint32_t* address) override {
        ++loads;
        const uint32_t word = ForwardingHost::loadWord(address);
        return falsifyLoad ? falsifyLoad(offsetOf(address), word) : word;
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        ++stores;
        ForwardingHost::storeWord(address, word);
    }
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override {
        privilegedTools.push_back(tool);
        return ForwardingHost::runPrivilegedTool(tool, arguments);
    }
};
