#pragma once

// Why something cannot be done with a stored machine or a file: one sentence, which begins with the file's
// path and a colon when it is about one. What failed is left as it was.

#include <stdexcept>

namespace simulator {

class MachineError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace simulator
