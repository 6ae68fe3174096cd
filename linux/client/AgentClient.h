#pragma once

// This computer's cards through the agent on the system bus, and logind for switching off.

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "linux/bus/Bus.h"
#include "linux/client/AgentConnection.h"
#include "linux/client/WriteLocks.h"
#include "linux/host/CardAgent.h"

namespace client {

class AgentClient : public host::CardAgent {
  public:
    // While a password or the lock for a write is waited for, `mayWait` is called about every 100 ms. If it
    // says no, the claim is cancelled and the agent withdraws its question. This never cancels a write.
    //
    // A write does not begin while the computer is going to sleep or off, nor until it has been awake for
    // `timeAwake` since logind last said that it is.
    explicit AgentClient(std::function<bool()> mayWait = {},
                         std::chrono::milliseconds timeAwake = std::chrono::minutes(5))
        : mayWait_(std::move(mayWait)), locks_(agent_, mayWait_, timeAwake) {}

    std::optional<std::vector<pci::FoundCard>> cards() override;
    Host::RightAnswer claim(bool mayAsk) override;
    void letGo() override;
    std::optional<pci::OpenedRange> openRange(const std::string& address, uint32_t memoryRange) override;
    void beginWrite() override { locks_.take(); }
    void endWrite() override { locks_.release(); }
    bool powerOff() override;

  private:
    void askForClaim(bool mayAsk, bus::Answer& answer);

    std::function<bool()> mayWait_;
    AgentConnection agent_;
    WriteLocks locks_;
};

}  // namespace client
