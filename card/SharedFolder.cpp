#include "card/SharedFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace {

constexpr mode_t kForUsAlone = S_IRWXU;

bool isOurs(const struct stat& entry) {
    return entry.st_uid == ::geteuid() && (entry.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

}  // namespace

bool TakeFile(const char* path) {
    ::unlink(path);
    const int file = ::open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    return file != -1 && ::close(file) == 0;
}

bool TakeFolder(const char* path) {
    std::error_code stays;
    std::filesystem::remove_all(path, stays);
    return ::mkdir(path, kForUsAlone) == 0;
}

bool IsOurFile(const char* path) {
    struct stat entry;
    return ::lstat(path, &entry) == 0 && S_ISREG(entry.st_mode) && entry.st_nlink == 1 && isOurs(entry);
}

bool IsOurFolder(const char* path) {
    struct stat entry;
    return ::lstat(path, &entry) == 0 && S_ISDIR(entry.st_mode) && isOurs(entry);
}
