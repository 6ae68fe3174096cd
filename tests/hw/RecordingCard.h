#pragma once

// A card with a silent chain, and an application that remembers what it was asked. One lives at a time.

#include "card/Registers.h"
#include "tests/support/FakeHost.h"

struct RecordingCard : FakeHost {
    RecordingCard();

    std::string asked;  // "event ", a progress in bytes, "title / message "; in order
};
