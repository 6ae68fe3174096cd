#include <gtest/gtest.h>

#include <memory>

#include "framework/core/LCommander.h"

namespace {

// Handles one command, and counts commands and requests to quit.
class Recorder : public LCommander {
  public:
    explicit Recorder(LCommander* super, CommandT handled = 0) : LCommander(super), mHandled(handled) {}

    bool ObeyCommand(CommandT command, void* parameter) override {
        if (command != mHandled) {
            return LCommander::ObeyCommand(command, parameter);
        }
        ++mObeyed;
        return true;
    }

    bool AttemptQuitSelf(int32_t /*saveOption*/) override {
        ++mAsked;
        mDestroyed.reset();
        return mAgrees;
    }

    CommandT mHandled;
    int mObeyed = 0;
    int mAsked = 0;
    bool mAgrees = true;
    std::unique_ptr<Recorder> mDestroyed;  // when this one is asked to quit
};

}  // namespace

TEST(CommanderTest, CommandsClimbUntilHandled) {
    Recorder top(nullptr, 20);
    LCommander middle(&top);
    Recorder bottom(&middle, 30);

    EXPECT_TRUE(bottom.ObeyCommand(30, nullptr));
    EXPECT_TRUE(bottom.ObeyCommand(20, nullptr));
    EXPECT_FALSE(bottom.ObeyCommand(40, nullptr));
    EXPECT_FALSE(top.ObeyCommand(30, nullptr)) << "commands do not pass downwards";
    EXPECT_EQ(bottom.mObeyed, 1);
    EXPECT_EQ(top.mObeyed, 1);
}

TEST(CommanderTest, AnySubcommanderMayRefuseToQuit) {
    Recorder top(nullptr);
    LCommander middle(&top);
    Recorder first(&middle);
    Recorder second(&middle);

    EXPECT_TRUE(top.AttemptQuit(kSaveOptionAsk));
    first.mAgrees = false;
    EXPECT_FALSE(top.AttemptQuit(kSaveOptionAsk));
    EXPECT_EQ(second.mAsked, 1) << "a refusal ends the question";
    first.mAgrees = true;
    top.mAgrees = false;
    EXPECT_FALSE(top.AttemptQuit(kSaveOptionAsk));
    EXPECT_EQ(first.mAsked, 2) << "a refusal at the top, too";
    top.mAgrees = true;
    first.mDestroyed = std::make_unique<Recorder>(&middle);
    first.mDestroyed->mAgrees = false;
    EXPECT_TRUE(top.AttemptQuit(kSaveOptionAsk)) << "destroyed commanders are not asked";
}

TEST(CommanderTest, ChainSurvivesDestructionInEitherOrder) {
    auto top = std::make_unique<Recorder>(nullptr, 20);
    auto bottom = std::make_unique<LCommander>(top.get());
    auto other = std::make_unique<LCommander>(top.get());
    other.reset();
    EXPECT_TRUE(top->AttemptQuit(kSaveOptionAsk));
    LCommander::SwitchTarget(top.get());
    {
        LCommander target(top.get());
        LCommander::SwitchTarget(&target);
    }
    EXPECT_EQ(LCommander::GetTarget(), top.get());
    top.reset();
    EXPECT_EQ(LCommander::GetTarget(), nullptr);
    EXPECT_FALSE(bottom->ObeyCommand(20));
}
