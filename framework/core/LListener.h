#pragma once

#include <vector>

#include "framework/core/FourCharCode.h"

class LBroadcaster;

// Something that hears what broadcasters say. Destroying it takes it off the list of every broadcaster.
class LListener {
  public:
    LListener() = default;
    LListener(const LListener&) = delete;
    LListener& operator=(const LListener&) = delete;
    virtual ~LListener();

    // The parameter belongs to the broadcaster and is good for the duration of the call; a control passes its
    // value as an int32_t*.
    virtual void ListenToMessage(MessageT message, void* parameter) = 0;

  private:
    friend class LBroadcaster;
    std::vector<LBroadcaster*> mBroadcasters;
};
