#include "simulator/host/PrivilegedTools.h"

#include <algorithm>
#include <optional>
#include <system_error>

#include "platform/ChildProcess.h"
#include "simulator/host/DriverBundle.h"

namespace simulator {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUsage = "wrong arguments.";

// A file or folder and everything below it; empty if it does not exist.
std::vector<fs::path> treeBelow(const fs::path& top) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(top, error))) {
        return {};
    }
    std::vector<fs::path> tree{top};
    for (fs::recursive_directory_iterator entry(top, error), end; !error && entry != end;
         entry.increment(error)) {
        tree.push_back(entry->path());
    }
    return tree;
}

bool liesBelow(const fs::path& path, const fs::path& top) {
    return std::ranges::mismatch(top, path).in1 == top.end();
}

}  // namespace

bool PrivilegedTools::run(const std::string& tool, const Arguments& arguments) {
    if (tool == "/bin/rm") {
        for (const std::string& argument : arguments) {
            forgetOwners(argument);
        }
        return start(tool, arguments);
    }
    std::string complaint;
    if (tool == "/usr/sbin/chown") {
        complaint = changeOwner(arguments);
    } else if (tool == "/sbin/kextload") {
        complaint = loadDriver(arguments);
    } else if (tool == "/sbin/kextunload") {
        complaint = unloadDriver(arguments);
    } else {
        return false;
    }
    if (complaint.empty()) {
        return start("/bin/sh", {"-c", "exit 0"});
    }
    complaint.insert(0, fs::path(tool).filename().string() + ": ");
    return start("/bin/sh", {"-c", R"(printf '%s\n' "$0" >&2; exit 1)", complaint});
}

bool PrivilegedTools::start(const std::string& program, const Arguments& arguments) {
    const std::optional<pid_t> child = platform::startChild(program, arguments);
    if (child) {
        children_.push_back(*child);
    }
    return child.has_value();
}

std::size_t PrivilegedTools::unwaitedFor() const {
    return static_cast<std::size_t>(std::ranges::count_if(children_, platform::isUnwaitedFor));
}

std::string PrivilegedTools::changeOwner(const Arguments& arguments) {
    if (arguments.size() != 3 || arguments[0] != "-R") {
        return kUsage;
    }
    const std::vector<fs::path> tree = treeBelow(arguments[2]);
    if (tree.empty()) {
        return arguments[2] + ": there is no such file.";
    }
    forgetOwners(arguments[2]);
    if (arguments[1] == "root:wheel") {
        ownedByRoot_.insert(tree.begin(), tree.end());
    }
    return "";
}

std::string PrivilegedTools::loadDriver(const Arguments& arguments) {
    if (arguments.size() != 1) {
        return kUsage;
    }
    const std::optional<DriverBundle> bundle = readDriverBundle(arguments[0]);
    if (!bundle) {
        return arguments[0] + ": is not the bundle of a driver.";
    }
    if (!rootOwnsAll(arguments[0])) {
        return arguments[0] + ": does not belong to root:wheel.";
    }
    if (drivers_.privateDriverFault == PrivateDriverFault::doesNotLoad) {
        return arguments[0] + ": the driver did not start.";
    }
    drivers_.loaded.try_emplace(bundle->identifier, Drivers::Loaded{.serviceClass = bundle->serviceClass});
    return "";
}

std::string PrivilegedTools::unloadDriver(const Arguments& arguments) {
    if (arguments.size() != 2 || arguments[0] != "-b") {
        return kUsage;
    }
    return drivers_.loaded.erase(arguments[1]) == 0 ? arguments[1] + ": is not loaded." : "";
}

void PrivilegedTools::forgetOwners(const fs::path& top) {
    std::erase_if(ownedByRoot_, [&top](const fs::path& path) { return liesBelow(path, top); });
}

bool PrivilegedTools::rootOwnsAll(const fs::path& top) const {
    return std::ranges::all_of(treeBelow(top),
                               [this](const fs::path& path) { return ownedByRoot_.contains(path); });
}

}  // namespace simulator
