#include "app/hosts/WriteListener.h"

#include <utility>

#include "app/WindowState.h"

WriteListener::WriteListener(std::function<void()> onBegin, std::function<void()> onEnd)
    : mOnBegin(std::move(onBegin)), mOnEnd(std::move(onEnd)) {}

void WriteListener::ListenToMessage(MessageT message, void* parameter) {
    const int32_t value = *static_cast<const int32_t*>(parameter);
    if (message == kIncompleteCardsMessage) {
        mIncompleteCards = value;
    } else if (message == kIdentityWriteMessage) {
        HearOfWrite(value != 0);
    } else if (message == kWindowStateMessage) {
        HearOfWrite(value == kWindowUpdating);
    }
}

void WriteListener::HearOfWrite(bool begins) {
    if (begins) {
        mOnBegin();
    } else if (mIncompleteCards == 0) {
        mOnEnd();
    }
}
