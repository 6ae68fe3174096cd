#pragma once

// Hears from the updater when a write to a card begins and when it has ended.

#include <functional>

#include "framework/core/LListener.h"

class WriteListener final : public LListener {
  public:
    // The functions are called in turn, the first one first. The second is also called if the write failed.
    WriteListener(std::function<void()> onBegin, std::function<void()> onEnd);

    void ListenToMessage(MessageT message, void* parameter) override;

  private:
    std::function<void()> mOnBegin;
    std::function<void()> mOnEnd;
    bool mIsWriting = false;
};
