#pragma once

// Hears from the updater when the computer must stay on: from the beginning of a write to a card until one
// has succeeded. After a failed write the card is lost as soon as its power goes, so nothing may take it away
// while the user looks for help. Quitting the program ends that.

#include <functional>

#include "framework/core/LListener.h"

class WriteListener final : public LListener {
  public:
    // The first function is called before each write, including one that follows a failed one; the second
    // after a write that succeeded.
    WriteListener(std::function<void()> onBegin, std::function<void()> onEnd);

    void ListenToMessage(MessageT message, void* parameter) override;

  private:
    std::function<void()> mOnBegin;
    std::function<void()> mOnEnd;
};
