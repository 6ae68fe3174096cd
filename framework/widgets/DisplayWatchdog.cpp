#include "framework/widgets/DisplayWatchdog.h"

#include <atomic>
#include <chrono>

namespace {

// Time is counted in the thread's own beats, not by the clock, so that a process which was itself stopped for
// a while does not mistake that for the display's silence.
constexpr std::chrono::milliseconds kBeat(100);
constexpr int32_t kBeatsBeforeQuestion = 20;

std::atomic<bool> gIsWatching = false;
std::atomic<bool> gHasBrokenOff = false;

// The section that the main thread is in, by number, or kNoSection.
constexpr uint32_t kNoSection = 0;
std::atomic<uint32_t> gSection = kNoSection;
std::atomic<int32_t> gPatience = 0;
uint32_t gLastSection = kNoSection;

}  // namespace

DisplayWatchdog::Section::Section(Patience patience) : mIsOutermost(gIsWatching && gSection == kNoSection) {
    if (mIsOutermost) {
        gPatience = patience;
        gSection = ++gLastSection;
    }
}

DisplayWatchdog::Section::~Section() {
    if (mIsOutermost) {
        gSection = kNoSection;
    }
}

DisplayWatchdog::DisplayWatchdog() : mProbe(DisplayProbe::Create()) {
    if (mProbe != nullptr && mProbe->CanBreakOff()) {
        mThread = std::jthread([this](const std::stop_token& stop) { Watch(stop); });
        gIsWatching = true;
    }
}

DisplayWatchdog::~DisplayWatchdog() {
    gIsWatching = false;
}

bool DisplayWatchdog::HasBrokenOff() {
    return gHasBrokenOff;
}

void DisplayWatchdog::Watch(const std::stop_token& stop) {
    uint32_t section = kNoSection;
    int32_t beats = 0;
    bool isAsking = false;
    while (!stop.stop_requested()) {
        std::this_thread::sleep_for(kBeat);
        if (isAsking && mProbe->IsAnswered()) {
            isAsking = false;
            beats = 0;
        }
        if (gSection != section) {
            section = gSection;
            beats = 0;
        }
        if (section == kNoSection || ++beats < kBeatsBeforeQuestion) {
            continue;
        }
        if (!isAsking) {
            mProbe->Ask();
            isAsking = true;
        } else if (beats >= kBeatsBeforeQuestion + gPatience && gSection == section) {
            gHasBrokenOff = true;
            mProbe->BreakOff();
            return;
        }
    }
}
