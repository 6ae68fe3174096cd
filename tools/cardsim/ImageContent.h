#pragma once

// What a firmware image writes.

#include <string>

#include "simulator/jtag/PromCells.h"

namespace cardsim {

// Plays an image (a file, or - for standard input) on a chain with an erased PROM, and returns what is in the
// PROM afterwards. Throws std::runtime_error, naming the file, when it cannot be read, fails, or ends before
// it is complete.
simulator::PromCells contentOfImage(const std::string& file);

}  // namespace cardsim
