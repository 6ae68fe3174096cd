#pragma once

// The images that the benchmarks play.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace benchmarks {

// A firmware image like those in the bundle: erases the PROM, programs all its pages and reads every page
// back.
std::vector<uint8_t> firmwareImage();

// The same with its compare masks cleared, so that it plays to its end at the same cost where no chain
// answers: every comparison is made in full and passes.
std::vector<uint8_t> unmaskedFirmwareImage();

// An image of at most this many bytes (1000 or more), made of compared data shifts of 512 bits.
std::vector<uint8_t> imageOfShifts(std::size_t bytes);

}  // namespace benchmarks
