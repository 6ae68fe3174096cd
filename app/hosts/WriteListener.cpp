#include "app/hosts/WriteListener.h"

#include <utility>

#include "app/WindowState.h"

WriteListener::WriteListener(std::function<void()> onBegin, std::function<void()> onEnd)
    : mOnBegin(std::move(onBegin)), mOnEnd(std::move(onEnd)) {}

void WriteListener::ListenToMessage(MessageT message, void* parameter) {
    if (message != kWindowStateMessage) {
        return;
    }
    const bool isWriting = *static_cast<const int32_t*>(parameter) == kWindowUpdating;
    if (std::exchange(mIsWriting, isWriting) != isWriting) {
        isWriting ? mOnBegin() : mOnEnd();
    }
}
