#pragma once

// Why something cannot be done with a stored machine: one printable sentence, which begins with the file's
// path and a colon when it is about one. What failed is left as it was.

#include <stdexcept>
#include <string_view>

#include "files/PrintableText.h"

namespace simulator {

class MachineError : public std::runtime_error {
  public:
    explicit MachineError(std::string_view sentence) : std::runtime_error(files::printable(sentence)) {}
};

}  // namespace simulator
