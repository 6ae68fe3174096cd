#pragma once

// Frees work from a display that freezes while it is being used.
//
// Qt waits for some of the display's replies without a limit, so a display that answered a moment ago can
// hold up what must not wait. While an object of this class exists, a thread of its own looks at how long the
// main thread is in Qt's hands. If that takes long it asks the display, on a connection of its own. A display
// that is merely slow answers, and is left alone. If there is no answer the thread breaks Qt's connection
// off. To Qt the display has then ended, which stops the wait.
//
// There is one such object at most, on the main thread. It does nothing where the display cannot be asked,
// nor on Wayland, where Qt does not tell which connection is its own.

#include <cstdint>
#include <memory>
#include <thread>

#include "framework/widgets/DisplayProbe.h"

class DisplayWatchdog {
  public:
    // Opens the connection and starts the thread, which may take memory and time. Throws what they throw.
    DisplayWatchdog();
    ~DisplayWatchdog();

    DisplayWatchdog(const DisplayWatchdog&) = delete;
    DisplayWatchdog& operator=(const DisplayWatchdog&) = delete;

    // For how long, in tenths of a second, the display may fail to answer. Work that nobody needs to see is
    // to go on soon. While a person is being asked, the window is worth more patience, since most displays
    // that freeze come back; but the person must not lose patience first and turn off the machine, because
    // what comes after the answer may be what the work cannot do without.
    enum Patience : int32_t { kWhileWorking = 10, kWhileAsking = 100 };

    // A stretch of the main thread's time in which Qt may wait for the display. Inside another one it changes
    // nothing.
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
