#pragma once

// Distinguishes firmware for simulated cards from any other, by what an image shifts into the PROM.
//
// A real card's PROM accepts both kinds, but its FPGA can do nothing with a simulated card's configuration,
// and then the card is lost: it never appears on the bus again.

#include <cstdint>
#include <span>

namespace images {

enum class FirmwareKind : uint8_t {
    simulated,
    other,
    unreadable,  // the image does not reach XCOMPLETE
};

// An image is a simulated card's if the bits that it shifts through the data register, taken together in
// their order, contain the signature of a simulated FPGA's configuration, or if what several passes leave in
// a page does. So it does not matter how the shifts are divided, in which order the pages come, what follows
// the signature, or whether the image is complete. About one other image in two thousand contains these 32
// bits by chance. This does not guard against an image that was made to deceive it: for example, a
// value that the PROM keeps only after a retry is examined once.
FirmwareKind firmwareKindOf(std::span<const uint8_t> image);

}  // namespace images
