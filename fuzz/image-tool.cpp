// Any bytes as what the image tool reads: an image to list and to check, and a listing to assemble.

#include <algorithm>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "fuzz/Require.h"
#include "images/CommandReader.h"
#include "images/Listing.h"
#include "images/ListingReader.h"
#include "images/play/ImageCheck.h"
#include "images/prom/CommandRules.h"

namespace {

using Image = std::vector<uint8_t>;

// An image within the rules can keep the check busy for long; this many TCK levels do not.
constexpr uint64_t kMostStores = 200'000;

void requireSameAfterListing(std::span<const uint8_t> image) {
    const auto again = images::imageOf(images::listingOf(image));
    require(std::holds_alternative<Image>(again), "a listing can be assembled");
    require(std::ranges::equal(std::get<Image>(again), image), "an image is the same after it was listed");
}

uint64_t storesUpToAFault(std::span<const uint8_t> image) {
    images::CommandReader reader(image);
    images::CommandRules rules;
    for (auto command = reader.next(); command && !rules.faultOf(*command);)
        command = reader.next();
    return rules.accesses().stores;
}

void checkImage(std::span<const uint8_t> image) {
    if (storesUpToAFault(image) > kMostStores)
        return;
    const images::ImageReport report = images::checkImage(image);
    if (report.fault) {
        require(report.fault->offset <= image.size(), "a fault lies in the image or at its end");
        require(report.fault->reason.ends_with('.'), "its reason is a sentence");
        require(!report.configuration, "an image with a fault has no known content");
    } else {
        require(!image.empty() && image.back() == 0, "a good image ends with XCOMPLETE");
        require(report.commands >= 1 && report.commands <= image.size(),
                "each command takes a byte at least");
        require(report.accesses.stores <= kMostStores, "a good image takes what was counted");
    }
}

void checkListing(std::string_view text) {
    const auto result = images::imageOf(text);
    if (const auto* const error = std::get_if<images::ListingError>(&result)) {
        const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
        const auto lines = static_cast<std::size_t>(std::ranges::count_if(text, isLineEnd)) + 1;
        require(error->line >= 1 && error->line <= lines, "the error is in one of the lines");
        require(error->reason.ends_with('.'), "its reason is a sentence");
    } else {
        requireSameAfterListing(std::get<Image>(result));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::span image(data, size);
    requireSameAfterListing(image);
    checkImage(image);
    checkListing({reinterpret_cast<const char*>(data), size});
    return 0;
}
