#include "tools/cardsim/IdentityText.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "images/ByteText.h"
#include "simulator/PromCells.h"

namespace cardsim {
namespace {

constexpr std::size_t kIdentityDigits = 8;

//   bits   31-24  23-20  19-12  11-0
//          model  year   week   unit
constexpr int kModelAt = 24;
constexpr int kYearAt = 20;
constexpr int kWeekAt = 12;
constexpr uint32_t kMostYear = 0xF;
constexpr uint32_t kMostWeek = 0xFF;
constexpr uint32_t kMostUnit = 0xFFF;

// The number that all of a text's characters make.
std::optional<uint32_t> number(std::string_view text, int base) {
    uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

}  // namespace

std::string identityName(uint32_t identity) {
    constexpr uint32_t kReadable = 0x7FFFFFFF;  // the updater never sees the topmost bit
    if ((identity & kReadable) == kReadable || identity == 0)
        return "blank (" + images::hexadecimalText(identity, kIdentityDigits) + ")";
    std::array<char, 32> text{};
    (void)std::snprintf(text.data(), text.size(), "%02x%02u%02u%04u", unsigned{identity >> kModelAt},
                        unsigned{identity >> kYearAt & kMostYear}, unsigned{identity >> kWeekAt & kMostWeek},
                        unsigned{identity & kMostUnit});
    return text.data() + (" (" + images::hexadecimalText(identity, kIdentityDigits) + ")");
}

std::optional<uint32_t> identityNamed(const std::string& text) {
    if (text == "blank")
        return simulator::PromCells::kErasedUserCode;
    if (text.size() != 2 + kIdentityDigits)
        return std::nullopt;
    const std::string_view digits(text);
    if (digits.starts_with("0x"))
        return number(digits.substr(2), 16);
    const auto model = number(digits.substr(0, 2), 16);
    const auto year = number(digits.substr(2, 2), 10);
    const auto week = number(digits.substr(4, 2), 10);
    const auto unit = number(digits.substr(6), 10);
    if (!model || !year || !week || !unit || *year > kMostYear || *unit > kMostUnit)
        return std::nullopt;
    return *model << kModelAt | *year << kYearAt | *week << kWeekAt | *unit;
}

}  // namespace cardsim
