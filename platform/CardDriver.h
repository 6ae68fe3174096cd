#pragma once

// What the cards' driver offers to programs, whichever machine it runs on.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace card_driver {

// The class of the services that it publishes, one per card.
constexpr char kServiceClass[] = "com_VornLabs_driver_VornMxDevice";

// Its only method takes nothing and returns the card's name and, after it, its location, each NUL-terminated.
constexpr uint32_t kInformationMethod = 0;
constexpr std::size_t kTextBytes = 256;
constexpr std::size_t kLocationAt = kTextBytes;
constexpr std::size_t kInformationBytes = kLocationAt + kTextBytes;

// Fills the first kInformationBytes of a reply, which has at least as many. Longer texts are cut to fit.
void putInformation(std::span<uint8_t> reply, std::string_view name, std::string_view location);

}  // namespace card_driver
