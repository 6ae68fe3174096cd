#pragma once

// Makes an image from its listing, whose form stands in Listing.h.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace images {

struct ListingError {
    std::size_t line;    // from 1
    std::string reason;  // one sentence
};

// A short listing can ask for much more than any card holds.
constexpr std::size_t kMostImageBytes = std::size_t{64} << 20;

// The image, or the first thing that is wrong with the listing. That the image becomes longer than
// `mostBytes` is wrong, too.
[[nodiscard]] std::variant<std::vector<uint8_t>, ListingError> imageOf(
    std::string_view listing, std::size_t mostBytes = kMostImageBytes);

}  // namespace images
