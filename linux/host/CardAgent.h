#pragma once

// What this computer's host asks of whoever may touch its cards: the agent, over D-Bus, or in a test the
// cards themselves.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Host.h"

class CardAgent {
  public:
    // A card that the configuration names and that is on the bus.
    struct Card {
        std::string address;   // on the bus, such as 0000:05:01.0
        std::string name;      // from the configuration
        std::string location;  // such as "PCI slot 3"; else the address
        bool isSimulated;      // the configuration says so, for a card on a guest computer's bus
        std::string refusal;   // why it cannot be used, one sentence; empty if it can
    };

    // One of a card's memory ranges: an open file whose pages, mapped from offset 0, hold it.
    struct Range {
        int descriptor;         // the caller's to close
        uint32_t offsetInPage;  // where the range begins, less than a page
        uint32_t bytes;
    };

    CardAgent() = default;
    CardAgent(const CardAgent&) = delete;
    CardAgent& operator=(const CardAgent&) = delete;
    virtual ~CardAgent() = default;

    // The cards in the order of their addresses. Anybody may ask; those that another program uses are
    // refused, those that this one has claimed are not. Nothing, without a message, if the agent cannot be
    // asked.
    virtual std::optional<std::vector<Card>> cards() = 0;

    // Claims all usable cards for this program until letGo() or its end. Asks for an administrator's password
    // if that is needed and mayAsk allows it. If the answer is not `granted`, mayAsk was true and the user
    // should know more than that, a line on standard error says what to do.
    [[nodiscard]] virtual Host::RightAnswer claim(bool mayAsk) = 0;
    virtual void letGo() = 0;

    // Opens memory range 0 or 1 of a claimed card; nothing, with a line on standard error, if that fails.
    [[nodiscard]] virtual std::optional<Range> openRange(const std::string& address, uint32_t memoryType) = 0;

    // From the first, which may be called again, to the second, the computer cannot be switched off or put to
    // sleep, nor the user logged out. Neither fails: without that protection the write goes on, after a line
    // on standard error. If the computer is already going to sleep or off, the first returns when it is awake
    // again.
    virtual void beginWrite() = 0;
    virtual void endWrite() = 0;

    // Switches the computer off, as the desktop's menu does. True if that has begun or was under way.
    [[nodiscard]] virtual bool powerOff() = 0;
};
