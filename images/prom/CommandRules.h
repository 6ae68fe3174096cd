#pragma once

// What a command must not say in an image that is to ship, as far as the commands before it tell.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "images/AccessCount.h"
#include "images/Command.h"
#include "simulator/jtag/Prom.h"

namespace images {

// Longer waits are a slip: four times the PROM's longest operation for any wait, a hundred times its due for
// programming one row, and an hour for everything together.
constexpr uint32_t kLongestWaitMicroseconds = 4 * simulator::Prom::kEraseMicroseconds;
constexpr uint32_t kLongestProgramMicroseconds = 100 * simulator::Prom::kProgramMicroseconds;
constexpr uint64_t kLongestRunSeconds = 3600;

// Watches the commands of one image, in their order. A copy goes on independently.
class CommandRules {
  public:
    // One sentence on what is wrong with the command, or nothing. After a fault there is nothing to go on
    // with.
    [[nodiscard]] std::optional<std::string> faultOf(const Command& command);

    // What the commands so far take on a card.
    [[nodiscard]] const Accesses& accesses() const { return counter_.total(); }

  private:
    using Fault = std::optional<std::string>;

    [[nodiscard]] Fault ownFault(const Command& command) const;
    [[nodiscard]] Fault instructionFault(const Command& command) const;
    [[nodiscard]] Fault stateFault(const Command& command) const;
    [[nodiscard]] Fault comparisonFault(const Command& command) const;
    [[nodiscard]] Fault stepsFault(const Command& command) const;
    void remember(const Command& command);

    AccessCounter counter_;
    // Lengths of the values that were loaded last; nothing for one that never was.
    std::optional<std::size_t> expectedBytes_;
    std::optional<std::size_t> compareMaskBytes_;
    std::optional<std::size_t> stepMaskBytes_;
};

}  // namespace images
