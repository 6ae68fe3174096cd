#pragma once

// The tools that a simulated machine's administrator can run.
//
// Each is a real child process with an exit status, which the caller must wait for. /bin/rm is this
// computer's own. /usr/sbin/chown, /sbin/kextload and /sbin/kextunload act on the simulated machine only:
// owners of files are remembered here instead of being changed, and drivers come and go in its Drivers. They
// act before the child starts; the child only prints the tool's message and exits with its status.

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

    // Starts a tool, by its full path. False, with nothing done by the tool, if the machine has no such tool;
    // also if no child could be started, and then what a simulated tool does has been done.
    [[nodiscard]] bool run(const std::string& tool, const std::vector<std::string>& arguments);

    // How many started tools have not been waited for yet.
    std::size_t unwaitedFor() const;

  private:
    using Arguments = std::vector<std::string>;

    [[nodiscard]] bool start(const std::string& program, const Arguments& arguments);

    // Return the tool's complaint; empty if it succeeded.
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
