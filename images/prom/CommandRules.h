#pragma once

// The rules for the commands of an image that can ship, judged without playing it.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "images/AccessCount.h"
#include "images/Command.h"
#include "simulator/jtag/Prom.h"

namespace images {

// Longer waits are taken for mistakes. The limits are four times the PROM's longest operation for any wait, a
// hundred times its programming time for a row, and an hour for the whole image.
constexpr uint32_t kLongestWaitMicroseconds = 4 * simulator::Prom::kEraseMicroseconds;
constexpr uint32_t kLongestProgramMicroseconds = 100 * simulator::Prom::kProgramMicroseconds;
constexpr uint64_t kLongestRunSeconds = 3600;

// Judges the commands of one image in their order. A copy continues independently.
class CommandRules {
  public:
    // What is wrong with the command, in one sentence, or nothing. It must not be called again after a fault.
    [[nodiscard]] std::optional<std::string> faultOf(const Command& command);

    // The accesses that the commands so far make.
    const Accesses& accesses() const { return counter_.total(); }

  private:
    using Fault = std::optional<std::string>;

    [[nodiscard]] Fault ownFault(const Command& command) const;
    [[nodiscard]] Fault instructionFault(const Command& command) const;
    [[nodiscard]] Fault stateFault(const Command& command) const;
    [[nodiscard]] Fault comparisonFault(const Command& command) const;
    [[nodiscard]] Fault stepsFault(const Command& command) const;
    void remember(const Command& command);

    AccessCounter counter_;
    // The lengths of the values that were loaded last, or nothing before the first.
    std::optional<std::size_t> expectedBytes_;
    std::optional<std::size_t> compareMaskBytes_;
    std::optional<std::size_t> stepMaskBytes_;
};

}  // namespace images
