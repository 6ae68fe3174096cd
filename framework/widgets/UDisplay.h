#pragma once

// The display that the window is on: whether there is one, whether it answers, and what happens to the
// program if it goes.
//
// A firmware write must not depend on it. So everything that makes Qt talk to the display while work may be
// under way is done inside Use or UseInPassing, which first ask IsGone or Answers. Such work also creates a
// DisplayWatchdog, for a display that freezes inside them.

#include "framework/widgets/DisplayWatchdog.h"
#include "framework/widgets/ExitGuard.h"
#include "framework/widgets/PromptDrawing.h"

class UDisplay {
  public:
    // Creates the QApplication. If no display can be opened, says so in one sentence on standard error and
    // ends the process with the exit code; so call it before anything that would have to be undone.
    static void Open(const char* programName, int exitCodeWithout);

    // Whether the connection to the display has broken, or the one to the session manager, which ends with
    // the session. It does not come back: nothing on the screen may be touched any more.
    static bool IsGone();

    // Whether the display answers now. Waits at most a tenth of a second for it, and not again while that
    // answer is outstanding, so a frozen display holds work up only once.
    static bool Answers();

    // Calls a function that shows something or lets events in, unless the display is gone, and notices if it
    // goes meanwhile. The function may then have stopped half-way.
    template <typename Function>
    static void Use(Function function) {
        const DisplayWatchdog::Section section(DisplayWatchdog::kWhileAsking);
        if (!IsGone() && !ExitGuard::Call(function)) {
            sHasStopped = true;
            NoteGone();
        }
    }

    // Calls such a function in the middle of work, which it must not hold up: only if the display answers.
    template <typename Function>
    static void UseInPassing(Function function) {
        if (Answers()) {
            const PromptDrawing prompt;
            const DisplayWatchdog::Section section(DisplayWatchdog::kWhileWorking);
            Use(function);
        }
    }

    // Call this where work that an event started has ended and the next step is to return to the event loop.
    // If a call of Use within the work has stopped half-way, the loop cannot go on, so its pass ends here,
    // too.
    static void LeaveBrokenPass();

  private:
    static void NoteGone();

    static bool sHasStopped;
};
