#include "tools/cardsim/IdentityText.h"

#include "catalogue/CardIdentity.h"
#include "catalogue/Numbers.h"
#include "images/ByteText.h"
#include "simulator/jtag/PromCells.h"

namespace cardsim {
namespace {

constexpr std::string_view kPrefix = "0x";
constexpr int kDigits = 8;

}  // namespace

std::string identityText(uint32_t identity) {
    constexpr uint32_t kReadable = 0x7FFFFFFF;  // the updater never sees the topmost bit
    return (catalogue::isBlankIdentity(identity & kReadable) ? "blank"
                                                             : catalogue::serialNumberText(identity)) +
           " (" + images::hexadecimalText(identity, kDigits) + ")";
}

std::optional<uint32_t> parseIdentity(std::string_view text) {
    if (text == "blank") {
        return simulator::PromCells::kErasedUserCode;
    }
    if (text.starts_with(kPrefix)) {
        const std::string_view digits = text.substr(kPrefix.size());
        return digits.size() == kDigits ? catalogue::wholeNumber(digits, 16) : std::nullopt;
    }
    return catalogue::parseSerialNumber(text);
}

}  // namespace cardsim
