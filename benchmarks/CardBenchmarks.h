#pragma once

// What playing an image costs in this process: over plain memory, and on a simulated card.

#include <cstddef>
#include <string>

namespace benchmarks {

// Names of the benchmarks, by which the reporter finds their results.
constexpr const char* kBareLoop = "bare loop";
constexpr const char* kPlayer = "player over plain memory";
constexpr const char* kSimulatedUpdate = "simulated update";

// Counters of the bare loop.
constexpr const char* kLoads = "loads";
constexpr const char* kStores = "stores";

// The benchmark of an image of this size over plain memory, and the counter that holds the image's true size
// in bytes.
std::string imageName(std::size_t bytes);
constexpr const char* kImageBytes = "bytes";
constexpr std::size_t kImageSizes[] = {1'000, 8'000, 64'000, 512'000, 8'000'000};

void registerCardBenchmarks();

}  // namespace benchmarks
