#include "app/logic/WriteTime.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "images/AccessCount.h"

namespace {

// Fifteen times the size of the images that ship, and still read without a noticeable delay.
constexpr std::uintmax_t kLargestImageBytes = 0x100'0000;

// Looking at a card must not mean waiting for a pipe or for a huge file.
bool canBeAnImage(const char* path) {
    std::error_code notARegularFile;
    const std::uintmax_t bytes = std::filesystem::file_size(path, notARegularFile);
    return !notARegularFile && bytes <= kLargestImageBytes;
}

}  // namespace

std::string WriteTimeText(const char* imagePath, std::optional<std::chrono::nanoseconds> loadTime) {
    if (!canBeAnImage(imagePath)) {
        return {};
    }
    std::ifstream image(imagePath, std::ios::binary);
    const auto accesses = images::accessesOf(image);
    if (!accesses) {
        return {};
    }
    double seconds = accesses->seconds();
    if (loadTime) {
        // Nearly all accesses are loads.
        seconds = static_cast<double>(accesses->count()) * std::chrono::duration<double>(*loadTime).count();
    }
    return "Writing takes " + RoundedDuration(seconds) + ".";
}

std::string RoundedDuration(double seconds) {
    constexpr double kSecondsPerMinute = 60;
    constexpr const char* kByHalfMinutes[] = {"less than a minute", "less than a minute", "about a minute",
                                              "about a minute and a half"};
    const long halfMinutes = std::lround(seconds / kSecondsPerMinute * 2);
    if (halfMinutes < static_cast<long>(std::size(kByHalfMinutes))) {
        return kByHalfMinutes[halfMinutes];
    }
    return "about " + std::to_string(std::lround(seconds / kSecondsPerMinute)) + " minutes";
}
