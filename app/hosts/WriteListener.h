#pragma once

// Hears from the updater when the computer must stay on: while an identity is written, and from the beginning
// of a firmware write until one has succeeded. After a failed one the card is lost as soon as its power goes,
// so nothing may take it away while the user looks for help. Quitting the program ends that.

#include <cstdint>
#include <functional>

#include "framework/core/LListener.h"

class WriteListener final : public LListener {
  public:
    // The first function is called before each write, including one that follows a failed one; the second
    // when the computer need not stay on any more.
    WriteListener(std::function<void()> onBegin, std::function<void()> onEnd);

    void ListenToMessage(MessageT message, void* parameter) override;

  private:
    void HearState(int32_t state);
    void HearIdentityWrite(bool isWriting);

    std::function<void()> mOnBegin;
    std::function<void()> mOnEnd;
    bool mIsFirmwareIncomplete = false;
};
