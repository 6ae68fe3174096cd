#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "framework/core/LBroadcaster.h"

namespace {

class Ear : public LListener {
  public:
    void ListenToMessage(MessageT message, void* /*parameter*/) override {
        mHeard.push_back(message);
        mReaction();
    }

    std::vector<MessageT> mHeard;
    std::function<void()> mReaction = [] {};
};

}  // namespace

TEST(BroadcasterTest, AllowsListenersToChangeDuringABroadcast) {
    LBroadcaster broadcaster;
    Ear first;
    Ear added;
    auto destroyed = std::make_unique<Ear>();
    Ear last;
    for (Ear* ear : {&first, &first, destroyed.get(), &last}) {
        broadcaster.AddListener(ear);
    }
    destroyed->mReaction = [] { ADD_FAILURE() << "no longer there"; };
    first.mReaction = [&] {
        destroyed.reset();
        broadcaster.AddListener(&added);
    };
    broadcaster.BroadcastMessage(1);
    EXPECT_TRUE(added.mHeard.empty()) << "hears only the next message";
    EXPECT_EQ(first.mHeard.size(), 1U) << "once, although added twice";
    EXPECT_EQ(last.mHeard.size(), 1U);
    broadcaster.BroadcastMessage(2);
    EXPECT_EQ(added.mHeard, std::vector<MessageT>{2});
}

TEST(BroadcasterTest, MayBeDestroyedDuringItsBroadcast) {
    auto broadcaster = std::make_unique<LBroadcaster>();
    Ear first;
    Ear second;
    broadcaster->AddListener(&first);
    broadcaster->AddListener(&second);
    first.mReaction = [&] { broadcaster.reset(); };
    broadcaster->BroadcastMessage(1);
    EXPECT_TRUE(second.mHeard.empty());
}
