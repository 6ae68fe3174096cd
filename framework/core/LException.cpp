#include "framework/core/LException.h"

LException::LException(int32_t code)
    : mCode(code), mText("framework exception \"" + TextOfCode(code) + "\"") {}
