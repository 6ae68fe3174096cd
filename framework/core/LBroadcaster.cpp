#include "framework/core/LBroadcaster.h"

#include <algorithm>

LListener::~LListener() {
    for (LBroadcaster* broadcaster : mBroadcasters) {
        broadcaster->Forget(this);
    }
}

LBroadcaster::LBroadcaster() : mListeners(std::make_shared<std::vector<LListener*>>()) {}

LBroadcaster::~LBroadcaster() {
    for (LListener* listener : *mListeners) {
        std::erase(listener->mBroadcasters, this);
    }
    mListeners->clear();
}

void LBroadcaster::AddListener(LListener* listener) {
    if (std::ranges::find(*mListeners, listener) == mListeners->end()) {
        mListeners->push_back(listener);
        listener->mBroadcasters.push_back(this);
    }
}

void LBroadcaster::BroadcastMessage(MessageT message, void* parameter) {
    const auto current = mListeners;
    const std::vector<LListener*> atStart = *current;
    for (LListener* listener : atStart) {
        if (std::ranges::find(*current, listener) != current->end()) {
            listener->ListenToMessage(message, parameter);
        }
    }
}

void LBroadcaster::Forget(LListener* listener) {
    std::erase(*mListeners, listener);
}
