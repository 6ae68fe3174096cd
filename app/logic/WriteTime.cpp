#include "app/logic/WriteTime.h"

#include <cmath>
#include <cstdint>
#include <iterator>
#include <span>

#include "app/logic/FirmwareImage.h"
#include "app/logic/FormatText.h"
#include "images/AccessCount.h"

std::string WriteTimeText(const char* imagePath) {
    FirmwareImageError ignored{};
    const auto image = LoadFirmwareImage(imagePath, ignored);
    if (!image) {
        return {};
    }
    const auto accesses = images::accessesOf(std::span<const uint8_t>(image->bytes.get(), image->size));
    return accesses ? "Writing takes " + RoundedDuration(accesses->seconds()) + "." : std::string();
}

std::string RoundedDuration(double seconds) {
    constexpr double kSecondsPerMinute = 60;
    constexpr const char* kByHalfMinutes[] = {"less than a minute", "less than a minute", "about a minute",
                                              "about a minute and a half"};
    const long halfMinutes = std::lround(seconds / kSecondsPerMinute * 2);
    if (halfMinutes < static_cast<long>(std::size(kByHalfMinutes))) {
        return kByHalfMinutes[halfMinutes];
    }
    return FormatText("about %ld minutes", std::lround(seconds / kSecondsPerMinute));
}
