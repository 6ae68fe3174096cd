#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "framework/core/LBroadcaster.h"

namespace {

class Ear : public LListener {
  public:
    void ListenToMessage(MessageT message, void* /*parameter*/) override {
        heard.push_back(message);
        reaction();
    }

    std::vector<MessageT> heard;
    std::function<void()> reaction = [] {};
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
    destroyed->reaction = [] { ADD_FAILURE() << "no longer there"; };
    first.reaction = [&] {
        destroyed.reset();
        broadcaster.AddListener(&added);
    };
    broadcaster.BroadcastMessage(1);
    EXPECT_TRUE(added.heard.empty()) << "hears only the next message";
    EXPECT_EQ(first.heard.size(), 1U) << "once, although added twice";
    EXPECT_EQ(last.heard.size(), 1U);
    broadcaster.BroadcastMessage(2);
    EXPECT_EQ(added.heard, std::vector<MessageT>{2});
}

TEST(BroadcasterTest, MayBeDestroyedDuringItsBroadcast) {
    auto broadcaster = std::make_unique<LBroadcaster>();
    Ear first;
    Ear second;
    broadcaster->AddListener(&first);
    broadcaster->AddListener(&second);
    first.reaction = [&] { broadcaster.reset(); };
    broadcaster->BroadcastMessage(1);
    EXPECT_TRUE(second.heard.empty());
}
