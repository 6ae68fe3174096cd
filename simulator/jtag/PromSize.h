#pragma once

// How much configuration a PROM holds, in the pages that it is programmed and read by.

#include <cstddef>

namespace simulator {

constexpr std::size_t kPromPages = 512;
constexpr std::size_t kPageBytes = 512;
constexpr std::size_t kPromBytes = kPromPages * kPageBytes;

}  // namespace simulator
