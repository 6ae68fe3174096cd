#include "app/hosts/WriteListener.h"

#include <cstdint>
#include <utility>

#include "app/WindowState.h"

WriteListener::WriteListener(std::function<void()> onBegin, std::function<void()> onEnd)
    : mOnBegin(std::move(onBegin)), mOnEnd(std::move(onEnd)) {}

void WriteListener::ListenToMessage(MessageT message, void* parameter) {
    if (message != kWindowStateMessage) {
        return;
    }
    const int32_t state = *static_cast<const int32_t*>(parameter);
    if (state == kWindowUpdating) {
        mOnBegin();
    } else if (state == kWindowFinished) {
        mOnEnd();
    }
}
