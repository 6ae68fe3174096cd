#pragma once

// Makes an image from its listing, whose form stands in Listing.h.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tools {

struct ListingError {
    std::size_t line;    // from 1
    std::string reason;  // one sentence
};

// The image, or the first thing that is wrong with the listing.
[[nodiscard]] std::variant<std::vector<uint8_t>, ListingError> imageOf(std::string_view listing);

}  // namespace tools
