#pragma once

// The display that the window is on: whether there is one, whether it answers, and what becomes of the
// program when it goes.
//
// A firmware write must not depend on it. So whatever makes Qt talk to the display while work may be under
// way is done inside Use, and first asks Answers or IsGone. Whoever does such work also makes a
// DisplayWatchdog, for a display that freezes inside Use.

#include "framework/widgets/DisplayWatchdog.h"
#include "framework/widgets/ExitGuard.h"
#include "framework/widgets/PromptDrawing.h"

class UDisplay {
  public:
    // Makes the QApplication. When no display can be opened, says so in one sentence on standard error and
    // ends the process with the exit code; so it is called before anything that would have to be undone.
    static void Open(const char* programName, int exitCodeWithout);

    // Whether the display has broken off, or the session manager, whose end is the end of the session. This
    // is for good: nothing on the screen may be touched any more.
    static bool IsGone();

    // Whether the display answers now. Waits a tenth of a second for it at most, and not again while that
    // answer is outstanding, so a display that has frozen holds work up only once.
    static bool Answers();

    // Calls what shows something or lets events in, unless the display is gone, and notices when it goes
    // meanwhile. The call may then have stopped half-way.
    template <typename Function>
    static void Use(Function function) {
        const DisplayWatchdog::Section section(DisplayWatchdog::kWhileAsking);
        if (!IsGone() && !ExitGuard::Call(function)) {
            sHasStopped = true;
            NoteGone();
        }
    }

    // Calls the same in the middle of work, which it must not hold up: only if the display answers.
    template <typename Function>
    static void UseInPassing(Function function) {
        if (Answers()) {
            const PromptDrawing prompt;
            const DisplayWatchdog::Section section(DisplayWatchdog::kWhileWorking);
            Use(function);
        }
    }

    // To be called where work that an event began has come to its end and only the event loop is left to
    // return to. When a call of Use within it has stopped half-way, the loop is in no state to go on, so its
    // pass ends here too.
    static void LeaveBrokenPass();

  private:
    static void NoteGone();

    static bool sHasStopped;
};
