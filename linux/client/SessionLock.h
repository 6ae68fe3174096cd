#pragma once

// Keeps the user's desktop session from being ended during a write.
//
// logind's locks do not: a session may end while the computer stays on, and the desktop then ends its
// programs. Its session manager has to be asked, over the session's bus. One that asks its programs instead
// is answered by the application framework.

#include "linux/bus/Bus.h"

namespace client {

class SessionLock {
  public:
    // Waits for a moment at most. Keeps a lock that it has. Says nothing if there is no such session manager.
    void take();
    void release() { connection_.reset(); }

  private:
    // The session manager drops the lock when the connection ends.
    bus::Connection connection_;
};

}  // namespace client
