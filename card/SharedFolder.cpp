// Another user may create a well-known name first: as a link to one of our files, as a pipe on which we would
// wait for ever, or as a file or folder that stays under their control. In a sticky folder such as /tmp, only
// root and we can remove or rename what we have taken.

#include "card/SharedFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

namespace {

constexpr mode_t kForUsAlone = S_IRWXU;

// How often a folder is cleared while another process is removing entries, too, and the pause in between.
constexpr int kClearings = 100;
constexpr std::chrono::milliseconds kBetweenClearings(50);

bool belongsToAnotherUser(const char* path) {
    struct stat entry;
    return ::lstat(path, &entry) == 0 && entry.st_uid != ::geteuid();
}

// remove_all stops at an entry that another process has removed first.
void clear(const char* path) {
    std::error_code error;
    for (int i = 0; i < kClearings; ++i) {
        std::filesystem::remove_all(path, error);
        if (error != std::errc::no_such_file_or_directory) {
            return;
        }
        std::this_thread::sleep_for(kBetweenClearings);
    }
}

}  // namespace

bool TakeFile(const char* path) {
    ::unlink(path);
    const int file = ::open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    return file != -1 && ::close(file) == 0;
}

bool TakeFolder(const char* path) {
    if (belongsToAnotherUser(path)) {
        return false;
    }
    clear(path);
    return ::mkdir(path, kForUsAlone) == 0;
}
