#pragma once

// The program as a client of the desktop's session manager, which asks it before the session ends. If the
// program then does not quit, it cancels the end of the session.
//
// Qt has such a client in X sessions only, although session managers that ask also run sessions on Wayland.
// Qt's also does not tell the end of a session from one that is merely saved, and waits for the session
// manager's permission to cancel, which holds up a firmware write while another program asks the user
// something.

#include <functional>
#include <memory>

class SessionClient {
  public:
    // Call this before the QApplication is created. Two clients of one program would both be asked.
    static void ReplaceQts();

    // Connects to the session manager if the environment names one, and waits for its first answer without a
    // limit, so there must be no work under way. The function makes the program quit
    // unless something prevents that, and returns whether it quits. It is called in the event loop.
    explicit SessionClient(std::function<bool()> quit);
    ~SessionClient();

    SessionClient(const SessionClient&) = delete;
    SessionClient& operator=(const SessionClient&) = delete;

  private:
    class Connection;

    std::unique_ptr<Connection> mConnection;
};
