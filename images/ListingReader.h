#pragma once

// Makes an image from its listing, which is described in Listing.h.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace images {

// A short listing can describe a very long image.
constexpr std::size_t kMostImageBytes = std::size_t{64} << 20;

// Throws files::UserError for the first error in the listing, which begins with its name and the line, such
// as "NAME, line 3: ". An image of more than `mostBytes` is an error, too.
std::vector<uint8_t> assemble(std::string_view listing, const std::string& name = "listing",
                              std::size_t mostBytes = kMostImageBytes);

}  // namespace images
