// Any bytes as input of the image tool: an image to list and to check, and a listing to assemble.

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

#include "files/UserError.h"
#include "fuzz/Require.h"
#include "images/CommandReader.h"
#include "images/Listing.h"
#include "images/ListingReader.h"
#include "images/play/ImageCheck.h"
#include "images/prom/CommandRules.h"
#include "images/prom/FirmwareKind.h"

namespace {

// A valid image can keep the check busy for a long time, so longer ones are skipped.
constexpr uint64_t kMostStores = 200'000;

void requireSameAfterListing(std::span<const uint8_t> image) {
    require(std::ranges::equal(images::assemble(images::listingOf(image)), image),
            "a listing assembles to the listed image");
}

uint64_t storesUpToAFault(std::span<const uint8_t> image) {
    images::CommandReader reader(image);
    images::CommandRules rules;
    for (auto command = reader.next(); command && !rules.faultOf(*command);) {
        command = reader.next();
    }
    return rules.accesses().stores;
}

void checkImage(std::span<const uint8_t> image) {
    if (storesUpToAFault(image) > kMostStores) {
        return;
    }
    const images::ImageReport report = images::checkImage(image);
    if (report.fault) {
        require(report.fault->offset <= image.size(), "a fault lies in the image or at its end");
        require(report.fault->reason.ends_with('.'), "the reason is a sentence");
        require(!report.configuration, "an image with a fault has no known content");
    } else {
        require(!image.empty() && image.back() == 0, "a good image ends with XCOMPLETE");
        require(report.commands >= 1 && report.commands <= image.size(),
                "each command has at least one byte");
        require(report.accesses.stores <= kMostStores, "a good image makes the accesses that were counted");
    }
}

void requireKindOfItsBeginning(std::span<const uint8_t> image) {
    using enum images::FirmwareKind;
    require(images::firmwareKindOf(image.first(image.size() / 2)) != simulated ||
                images::firmwareKindOf(image) == simulated,
            "what follows firmware for a simulated card does not hide it");
}

void checkListing(std::string_view text) {
    std::vector<uint8_t> image;
    try {
        image = images::assemble(text, "text");
    } catch (const files::UserError& error) {
        const std::string_view sentence = error.what();
        require(sentence.starts_with("text, line ") && sentence.ends_with('.'), "an error names its line");
        return;
    }
    requireSameAfterListing(image);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::span image(data, size);
    requireSameAfterListing(image);
    requireKindOfItsBeginning(image);
    checkImage(image);
    checkListing({reinterpret_cast<const char*>(data), size});
    return 0;
}
