#include "linux/bus/AgentInterface.h"

#include <algorithm>
#include <array>

namespace bus {
namespace {

// In the order of the enumeration.
constexpr std::array kTexts = {"granted", "dismissed", "refused", "nobody to ask"};

}  // namespace

const char* textOf(ClaimAnswer answer) {
    return kTexts[static_cast<std::size_t>(answer)];
}

std::optional<ClaimAnswer> claimAnswerOf(std::string_view text) {
    const auto* const found = std::ranges::find(kTexts, text);
    return found == kTexts.end() ? std::nullopt
                                 : std::optional(static_cast<ClaimAnswer>(found - kTexts.begin()));
}

}  // namespace bus
