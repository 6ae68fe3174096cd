#pragma once

// What the framework throws: an error named by a four-character code. LApplication::Run reports it if it is
// not caught. An application throws it, too, if its layout lacks a pane.

#include <cstdint>
#include <exception>
#include <string>

#include "framework/core/FourCharCode.h"

class LException : public std::exception {
  public:
    static constexpr int32_t kNilPointer = FourCharCode("nilP");

    explicit LException(int32_t code) : mText("framework exception \"" + TextOfCode(code) + "\"") {}

    const char* what() const noexcept override { return mText.c_str(); }

  private:
    std::string mText;
};

// Returns the pointer, or throws "nilP" if it is null.
template <typename Type>
Type* ThrowIfNil(Type* pointer) {
    if (pointer == nullptr) {
        throw LException(LException::kNilPointer);
    }
    return pointer;
}
