#pragma once

// Something that receives broadcasters' messages. Destroying it removes it from every broadcaster.

#include <vector>

#include "framework/core/FourCharCode.h"

class LBroadcaster;

class LListener {
  public:
    LListener() = default;
    LListener(const LListener&) = delete;
    LListener& operator=(const LListener&) = delete;
    virtual ~LListener();

    // The parameter belongs to the broadcaster and is valid during the call; a control passes its value as an
    // int32_t*.
    virtual void ListenToMessage(MessageT message, void* parameter) = 0;

  private:
    friend class LBroadcaster;
    std::vector<LBroadcaster*> mBroadcasters;
};
