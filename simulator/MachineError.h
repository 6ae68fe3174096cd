#pragma once

// Why a stored machine cannot be opened, made or saved: one sentence that names the file. What
// failed is left as it was.

#include <stdexcept>

namespace simulator {

class MachineError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace simulator
