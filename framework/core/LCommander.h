#pragma once

// A link in the chain of command: a command that a commander does not handle climbs to its super-commander.
// Commanders do not own each other and may be destroyed in any order.

#include <cstdint>
#include <vector>

#include "framework/core/FourCharCode.h"
#include "framework/core/LAttachable.h"

// Commands that the framework itself knows; every other number belongs to the application.
constexpr CommandT kCommandAbout = 1;
constexpr CommandT kCommandQuit = 10;
constexpr CommandT kCommandHelp = 1000;
constexpr CommandT kCommandCopyDetails = 1001;

// What to do about unsaved work when quitting: ask the user.
constexpr int32_t kSaveOptionAsk = FourCharCode("ask ");

class LCommander : public virtual LAttachable {
  public:
    explicit LCommander(LCommander* super = nullptr);
    ~LCommander() override;

    // Moves this commander, with everything below it, under another one, or under none (null).
    void SetSuperCommander(LCommander* super);

    // Carries out a command, here or further up, and returns whether that was possible. The parameter belongs
    // to the sender and may be null.
    virtual bool ObeyCommand(CommandT command, void* parameter = nullptr);

    // Says how a command shows in a menu: whether it can be chosen, whether it carries a mark and which (0 is
    // none), and its text as a Pascal string in a Str255. The caller presets all four to "disabled, no mark,
    // no text of its own"; the commander that knows the command changes what differs.
    virtual void FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark,
                                   uint16_t& outMark, unsigned char* outName);

    // Whether this commander itself agrees to quit.
    virtual bool AttemptQuitSelf(int32_t saveOption);

    // Asks this commander and everything below it, and stops at the first refusal.
    [[nodiscard]] bool AttemptQuit(int32_t saveOption);

    // The commander at which a command from the menu bar enters this one's chain: the top, until another has
    // become the target. If the target leaves the chain, its super-commander takes its place.
    LCommander& GetTarget();
    void BecomeTarget();

  private:
    LCommander& Top();
    void PassTargetOn();

    LCommander* mSuper = nullptr;
    std::vector<LCommander*> mSubCommanders;
    // Of the chain that this commander is the top of; null until a commander has become the target.
    LCommander* mTarget = nullptr;
};
