#pragma once

// A card whose TDO follows a script, and an application that remembers what it was asked. One lives at a
// time.

#include <deque>

#include "card/Registers.h"
#include "tests/support/FakeHost.h"

struct ScriptedCard : FakeHost {
    ScriptedCard();

    // What the chain gives out in the next captured bits, bit 0 first; after the script, the last of them
    // again, or what the window holds.
    void answers(uint64_t bits, int count) {
        for (; count > 0; --count, bits >>= 1) {
            tdo.push_back((bits & 1) != 0 ? 0x80 : 0x7F);
        }
    }

    uint32_t loadWord(const uint32_t* address) override {
        if (address == RegisterAt(kJtagInputRegister) && !tdo.empty()) {
            window[kJtagInputRegister / 4] = tdo.front();
            tdo.pop_front();
        }
        return FakeHost::loadWord(address);
    }

    std::deque<uint32_t> tdo;
    std::string asked;  // "event ", a progress in bytes, "title / message "; in order
};
