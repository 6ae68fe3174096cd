#pragma once

// Reserves the fixed file names in /tmp for one test. Other tests, of this build or another, wait. The two
// files are removed before and after. A test that hangs is killed early enough for waiting tests to finish
// within their time limits, and its child processes do not keep the lock.

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
        // A forked child would hold the lock until it ends.
        [[maybe_unused]] static const int registered =
            ::pthread_atfork(nullptr, nullptr, [] { ::close(lockedFolder); });
        lockedFolder = ::open("/tmp", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::flock(lockedFolder, LOCK_EX);
        ::alarm(kLongestSeconds);
        clear();
    }
    ~SystemTmp() {
        clear();
        ::alarm(0);
        ::close(lockedFolder);
        lockedFolder = -1;
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

    static inline int lockedFolder = -1;
};
