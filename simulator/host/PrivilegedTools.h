#pragma once

// The tools that a simulated machine's administrator can run.
//
// Each is a real child process with an exit status, for whoever started it to wait for. /bin/rm is this
// computer's own. /usr/sbin/chown, /sbin/kextload and /sbin/kextunload act on the machine alone: its files'
// owners are remembered here instead of being changed, and drivers come and go in its Drivers. They have
// acted by the time that the child runs, which then says what the tool has to say and ends as it would.

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "simulator/machine/Drivers.h"

namespace simulator {

class PrivilegedTools {
  public:
    // The drivers must outlive the tools.
    explicit PrivilegedTools(Drivers& drivers) : drivers_(drivers) {}

    // Starts a tool. False when the machine has no such tool or no child could be started.
    [[nodiscard]] bool run(const std::string& tool, const std::vector<std::string>& arguments);

    // How many of the tools that were started nobody has waited for yet.
    std::size_t unwaitedFor() const;

  private:
    using Arguments = std::vector<std::string>;

    bool start(const std::string& program, const Arguments& arguments);

    // What a tool complains of; empty when it succeeded.
    std::string changeOwner(const Arguments& arguments);
    std::string loadDriver(const Arguments& arguments);
    std::string unloadDriver(const Arguments& arguments);

    void forgetOwners(const std::filesystem::path& top);
    bool rootOwnsAll(const std::filesystem::path& top) const;

    Drivers& drivers_;
    std::set<std::filesystem::path> ownedByRoot_;  // as user and group root:wheel
    std::vector<pid_t> children_;
};

}  // namespace simulator
