#include "simulator/storage/MachineFiles.h"

#include <string>
#include <system_error>

#include "files/Commit.h"
#include "files/FileError.h"
#include "files/OutputFile.h"

namespace simulator {

void requireOutsideMachines(const std::filesystem::path& file) {
    namespace fs = std::filesystem;
    const fs::path goal = files::behindLinks(file);
    const std::string name = goal.filename();
    std::error_code ignored;
    const bool wouldHarm =
        files::belongsToCommits(name) || name == kMachineFile ||
        (goal.extension() == kPromExtension && fs::exists(fs::symlink_status(goal, ignored)));
    if (wouldHarm && files::isCommitted(goal.parent_path(), kMachineFile)) {
        throw files::FileError(file, "would replace a file of the simulated machine in that folder");
    }
}

}  // namespace simulator
