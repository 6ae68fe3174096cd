#pragma once

// Frees work from a display that freezes while it is being used.
//
// Qt waits for some of the display's replies without a limit, so a display that answered a moment ago can
// hold up work that must not wait. While an object of this class exists, a separate thread watches how long
// the main thread stays in Qt. If that takes long, it asks the display on a separate connection. A display
// that is only slow answers and is left alone. If there is no answer, the thread breaks Qt's connection off.
// For Qt the display has then ended, which ends the wait.
//
// There is at most one such object, on the main thread. It does nothing if the display cannot be asked, nor
// on Wayland, where Qt does not say which connection is its own.

#include <cstdint>
#include <memory>
#include <thread>

#include "framework/widgets/DisplayProbe.h"

class DisplayWatchdog {
  public:
    // Opens the connection and starts the thread, which may take memory and time, and may throw.
    DisplayWatchdog();
    ~DisplayWatchdog();

    DisplayWatchdog(const DisplayWatchdog&) = delete;
    DisplayWatchdog& operator=(const DisplayWatchdog&) = delete;

    // For how long, in tenths of a second, the display may fail to answer. Work without a question must
    // continue soon. While the user is being asked, the window is worth more patience, because most displays
    // that freeze come back. But the user must not lose patience first and switch the computer off: the work
    // may depend on what follows the answer.
    enum Patience : int32_t { kWhileWorking = 10, kWhileAsking = 100 };

    // While an object of this class exists, Qt may wait for the display on the main thread. Inside another
    // section it changes nothing.
    class Section {
      public:
        explicit Section(Patience patience);
        ~Section();

        Section(const Section&) = delete;
        Section& operator=(const Section&) = delete;

      private:
        bool mIsOutermost;
    };

    // Whether a connection has ever been broken off.
    static bool HasBrokenOff();

  private:
    void Watch(const std::stop_token& stop);

    std::unique_ptr<DisplayProbe> mProbe;
    std::jthread mThread;
};
