#pragma once

// Why something could not be done, to be shown to the person who asked for it. Nothing has changed, unless
// the function that throws says otherwise.

#include <stdexcept>
#include <string_view>

#include "files/PrintableText.h"

namespace files {

class UserError : public std::runtime_error {
  public:
    // One or more full sentences. A sentence about a file begins with its name and a colon.
    explicit UserError(std::string_view sentence) : std::runtime_error(printable(sentence)) {}
};

}  // namespace files
