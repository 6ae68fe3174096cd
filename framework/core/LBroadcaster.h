#pragma once

// Something that tells its listeners what happened to it. Neither side owns the other, and either may be
// destroyed first.

#include <memory>
#include <vector>

#include "framework/core/LListener.h"

class LBroadcaster {
  public:
    LBroadcaster();
    LBroadcaster(const LBroadcaster&) = delete;
    LBroadcaster& operator=(const LBroadcaster&) = delete;
    virtual ~LBroadcaster();

    // Adding a listener that is already there changes nothing. Destroying a listener removes it.
    void AddListener(LListener* listener);

    // Calls the listeners in the order in which they were added. A listener destroyed during a broadcast is
    // not called; one added during it hears only later messages. A listener may destroy this broadcaster. An
    // exception from a listener goes to the caller, and the listeners after it are not called.
    void BroadcastMessage(MessageT message, void* parameter = nullptr);

  private:
    friend class LListener;
    void Forget(LListener* listener);

    // Shared with the broadcasts in progress, which must notice when this object is gone.
    std::shared_ptr<std::vector<LListener*>> mListeners;
};
