#include "framework/core/LCommander.h"

#include <algorithm>

LCommander::LCommander(LCommander* super) {
    SetSuperCommander(super);
}

LCommander::~LCommander() {
    SetSuperCommander(nullptr);
    for (LCommander* sub : mSubCommanders) {
        sub->mSuper = nullptr;
    }
}

void LCommander::SetSuperCommander(LCommander* super) {
    if (mSuper != nullptr) {
        PassTargetOn();
        std::erase(mSuper->mSubCommanders, this);
    }
    mSuper = super;
    if (mSuper != nullptr) {
        mSuper->mSubCommanders.push_back(this);
        mTarget = nullptr;
    }
}

bool LCommander::ObeyCommand(CommandT command, void* parameter) {
    return mSuper != nullptr && mSuper->ObeyCommand(command, parameter);
}

void LCommander::FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark,
                                   uint16_t& outMark, unsigned char* outName) {
    if (mSuper != nullptr) {
        mSuper->FindCommandStatus(command, outEnabled, outUsesMark, outMark, outName);
    }
}

bool LCommander::AttemptQuitSelf(int32_t /*saveOption*/) {
    return true;
}

bool LCommander::AttemptQuit(int32_t saveOption) {
    if (!AttemptQuitSelf(saveOption)) {
        return false;
    }
    // A commander may ask the user, and others may be destroyed meanwhile; these are not asked.
    const std::vector<LCommander*> asked = mSubCommanders;
    return std::ranges::all_of(asked, [&](LCommander* sub) {
        return std::ranges::find(mSubCommanders, sub) == mSubCommanders.end() || sub->AttemptQuit(saveOption);
    });
}

LCommander& LCommander::GetTarget() {
    LCommander& top = Top();
    return top.mTarget != nullptr ? *top.mTarget : top;
}

void LCommander::BecomeTarget() {
    Top().mTarget = this;
}

LCommander& LCommander::Top() {
    LCommander* top = this;
    while (top->mSuper != nullptr) {
        top = top->mSuper;
    }
    return *top;
}

// The target leaves with this commander if it is this one or below it.
void LCommander::PassTargetOn() {
    LCommander& top = Top();
    for (const LCommander* link = top.mTarget; link != nullptr; link = link->mSuper) {
        if (link == this) {
            top.mTarget = mSuper;
            return;
        }
    }
}
