#include "tools/images/OutputFile.h"

#include <stdexcept>

#include "simulator/Files.h"

namespace tools {

namespace fs = std::filesystem;

void writeOutputFile(const fs::path& path, std::span<const uint8_t> content, const fs::path& madeFrom) {
    std::error_code ignored;
    const fs::file_status present = fs::status(path, ignored);
    // A folder cannot be replaced, and a device or a pipe must not be.
    if (fs::exists(present) && !fs::is_regular_file(present)) {
        throw std::runtime_error(path.string() + ": is not an ordinary file.");
    }
    if (!madeFrom.empty() && fs::equivalent(path, madeFrom, ignored)) {
        throw std::runtime_error(path.string() + ": would be replaced by what is made from it.");
    }
    // Behind a link, its goal is what gets replaced.
    simulator::replaceFile(fs::weakly_canonical(path), content);
}

}  // namespace tools
