#include <gtest/gtest.h>

#include <memory>

#include "framework/core/LCommander.h"

namespace {

// Handles one command, and counts commands and requests to quit.
class Recorder : public LCommander {
  public:
    explicit Recorder(LCommander* super, CommandT handled = 0) : LCommander(super), handled_(handled) {}

    bool ObeyCommand(CommandT command, void* parameter) override {
        if (command != handled_) {
            return LCommander::ObeyCommand(command, parameter);
        }
        ++obeyed;
        return true;
    }

    bool AttemptQuitSelf(int32_t /*saveOption*/) override {
        ++asked;
        destroyed.reset();
        return agrees;
    }

    int obeyed = 0;
    int asked = 0;
    bool agrees = true;
    std::unique_ptr<Recorder> destroyed;  // when this one is asked to quit

  private:
    CommandT handled_;
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
    EXPECT_EQ(bottom.obeyed, 1);
    EXPECT_EQ(top.obeyed, 1);
}

TEST(CommanderTest, AnySubcommanderMayRefuseToQuit) {
    Recorder top(nullptr);
    LCommander middle(&top);
    Recorder first(&middle);
    Recorder second(&middle);

    EXPECT_TRUE(top.AttemptQuit(kSaveOptionAsk));
    first.agrees = false;
    EXPECT_FALSE(top.AttemptQuit(kSaveOptionAsk));
    EXPECT_EQ(second.asked, 1) << "a refusal ends the question";
    first.agrees = true;
    top.agrees = false;
    EXPECT_FALSE(top.AttemptQuit(kSaveOptionAsk));
    EXPECT_EQ(first.asked, 2) << "a refusal at the top, too";
    top.agrees = true;
    first.destroyed = std::make_unique<Recorder>(&middle);
    first.destroyed->agrees = false;
    EXPECT_TRUE(top.AttemptQuit(kSaveOptionAsk)) << "destroyed commanders are not asked";
}

TEST(CommanderTest, ChainSurvivesDestructionInEitherOrder) {
    auto top = std::make_unique<Recorder>(nullptr, 20);
    auto bottom = std::make_unique<LCommander>(top.get());
    auto other = std::make_unique<LCommander>(top.get());
    other.reset();
    EXPECT_TRUE(top->AttemptQuit(kSaveOptionAsk));
    {
        LCommander middle(top.get());
        LCommander target(&middle);
        target.BecomeTarget();
        EXPECT_EQ(&bottom->GetTarget(), &target);
        middle.SetSuperCommander(nullptr);
        EXPECT_EQ(&bottom->GetTarget(), top.get()) << "the target has left the chain";
        target.SetSuperCommander(bottom.get());
        target.BecomeTarget();
    }
    EXPECT_EQ(&top->GetTarget(), bottom.get());
    top.reset();
    EXPECT_EQ(&bottom->GetTarget(), bottom.get());
    EXPECT_FALSE(bottom->ObeyCommand(20));
}
