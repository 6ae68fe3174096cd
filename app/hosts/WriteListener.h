#pragma once

// Hears from the updater when the computer must stay on: while an identity is written, and from the beginning
// of a firmware write until the last write of each card has succeeded. After a failed one the card is lost as
// soon as its power goes, so nothing may take it away while the user looks for help. Quitting ends that.

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
    void HearOfWrite(bool begins);

    std::function<void()> mOnBegin;
    std::function<void()> mOnEnd;
    int32_t mIncompleteCards = 0;
};
