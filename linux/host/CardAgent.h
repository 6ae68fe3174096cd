#pragma once

// What the host asks of the agent that opens this computer's cards. The agent is a program on the system bus,
// or in a test an object of this process.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/pci/base/FoundCard.h"
#include "linux/pci/base/MemoryRange.h"
#include "platform/Host.h"

namespace host {

class CardAgent {
  public:
    CardAgent() = default;
    CardAgent(const CardAgent&) = delete;
    CardAgent& operator=(const CardAgent&) = delete;
    virtual ~CardAgent() = default;

    // The cards in the order of their addresses. Anybody may ask; those that another program uses are
    // refused, those that this one has claimed are not. Nothing, without a message, if the agent cannot be
    // asked.
    [[nodiscard]] virtual std::optional<std::vector<pci::FoundCard>> cards() = 0;

    // Claims all usable cards for this program until letGo() or its end. Asks for an administrator's password
    // if that is needed and mayAsk allows it. If the answer is not `granted`, mayAsk was true and the user
    // should know more than that, a line on standard error says what to do.
    [[nodiscard]] virtual Host::RightAnswer claim(bool mayAsk) = 0;
    virtual void letGo() = 0;

    // Opens memory range 0 or 1 of a claimed card; nothing, with a line on standard error, if that fails.
    [[nodiscard]] virtual std::optional<pci::OpenedRange> openRange(const std::string& address,
                                                                    uint32_t memoryRange) = 0;

    // Between beginWrite, which may be called again, and endWrite, the computer cannot be switched off or put
    // to sleep, nor the user logged out. Neither fails: without that protection the write goes on, after a
    // line on standard error. If the computer is already going to sleep or off, beginWrite returns when it is
    // awake again.
    virtual void beginWrite() = 0;
    virtual void endWrite() = 0;

    // Switches the computer off, as the desktop's menu does. True if that has begun or was under way.
    [[nodiscard]] virtual bool powerOff() = 0;
};

}  // namespace host
