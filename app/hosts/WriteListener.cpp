#include "app/hosts/WriteListener.h"

#include <utility>

#include "app/WindowState.h"

WriteListener::WriteListener(std::function<void()> onBegin, std::function<void()> onEnd)
    : mOnBegin(std::move(onBegin)), mOnEnd(std::move(onEnd)) {}

void WriteListener::ListenToMessage(MessageT message, void* parameter) {
    if (message == kWindowStateMessage) {
        HearState(*static_cast<const int32_t*>(parameter));
    } else if (message == kIdentityWriteMessage) {
        HearIdentityWrite(*static_cast<const int32_t*>(parameter) != 0);
    }
}

void WriteListener::HearState(int32_t state) {
    if (state == kWindowUpdating) {
        mIsFirmwareIncomplete = true;
        mOnBegin();
    } else if (state == kWindowFinished) {
        mIsFirmwareIncomplete = false;
        mOnEnd();
    }
}

void WriteListener::HearIdentityWrite(bool isWriting) {
    if (isWriting) {
        mOnBegin();
    } else if (!mIsFirmwareIncomplete) {
        mOnEnd();
    }
}
