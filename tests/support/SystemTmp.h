#pragma once

// /tmp as one program's own, for tests of what puts files there under fixed names. Whoever else does the
// same, from this build or another, waits; the two files are gone before and after. A test that hangs
// meanwhile is ended in time for those who wait to finish within their own limit, and what it started does
// not hold on to /tmp.

#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

class SystemTmp {
  public:
    static constexpr const char* archive = "/tmp/vupdaterkext.pax";
    static constexpr const char* driver = "/tmp/VUpdater.kext";

    SystemTmp() {
        // A forked child shares the lock for as long as it lives.
        [[maybe_unused]] static const int registered =
            ::pthread_atfork(nullptr, nullptr, [] { ::close(folder_); });
        folder_ = ::open("/tmp", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::flock(folder_, LOCK_EX);
        ::alarm(kLongestSeconds);
        clear();
    }
    ~SystemTmp() {
        clear();
        ::alarm(0);
        ::close(folder_);
        folder_ = -1;
    }
    SystemTmp(const SystemTmp&) = delete;
    SystemTmp& operator=(const SystemTmp&) = delete;

    static bool isClean() { return !std::filesystem::exists(archive) && !std::filesystem::exists(driver); }

  private:
    static constexpr unsigned kLongestSeconds = 100;

    static void clear() {
        std::filesystem::remove_all(archive);
        std::filesystem::remove_all(driver);
    }

    static inline int folder_ = -1;
};
