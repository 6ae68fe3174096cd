#pragma once

// The emulator of a guest computer as a child process.

#include <sys/types.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace simulator {

class Emulator {
  public:
    // Starts a command, found as a shell finds it, with the descriptors inherited and no signal blocked. It
    // ends with this process. Throws files::UserError.
    Emulator(std::vector<std::string> command, std::span<const int> inherited);
    Emulator(const Emulator&) = delete;
    Emulator& operator=(const Emulator&) = delete;
    // Kills it if it still runs.
    ~Emulator();

    // Sends a signal; does nothing once exitCode() has returned a code.
    void signal(int number) const;

    // The exit code, in a shell's terms, if it has ended; never waits.
    std::optional<int> exitCode();

  private:
    pid_t process_ = -1;  // until it has been waited for
    std::optional<int> exitCode_;
};

}  // namespace simulator
