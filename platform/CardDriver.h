#pragma once

// What the cards' driver offers to programs, whichever machine it runs on.

#include <cstddef>
#include <cstdint>

namespace card_driver {

// The class of the services that it publishes, one per card.
constexpr char kServiceClass[] = "com_VornLabs_driver_VornMxDevice";

// Its only method takes nothing and returns the card's name and, after it, its location, each NUL-terminated.
constexpr uint32_t kInformationMethod = 0;
constexpr std::size_t kTextBytes = 256;
constexpr std::size_t kLocationAt = kTextBytes;
constexpr std::size_t kInformationBytes = kLocationAt + kTextBytes;

}  // namespace card_driver
