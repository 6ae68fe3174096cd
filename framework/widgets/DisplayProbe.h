#pragma once

// A question to the display that can be asked without waiting for the answer.

#include <memory>

class DisplayProbe {
  public:
    // Opens a separate connection to the display that Qt shows the window on. Null on a platform without a
    // display server, or if the server accepts no further connection.
    static std::unique_ptr<DisplayProbe> Create();

    virtual ~DisplayProbe() = default;

    // Whether the server has gone, or has closed Qt's connection. Does not wait.
    virtual bool IsGone() = 0;

    // Sends the question. At most one may be unanswered.
    virtual void Ask() = 0;

    // Whether the answer has come. Does not wait.
    virtual bool IsAnswered() = 0;

    // Whether BreakOff has an effect.
    virtual bool CanBreakOff() { return false; }

    // Ends Qt's connection from this side, on any thread. Whatever is waiting on it continues, and finds that
    // the display has gone.
    virtual void BreakOff() {}

    // Waits for something to arrive on the connection.
    void Wait(int milliseconds);

  protected:
    // The connection's socket.
    virtual int Descriptor() = 0;
};
