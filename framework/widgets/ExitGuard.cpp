#include "framework/widgets/ExitGuard.h"

#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <csetjmp>
#include <cstdlib>

namespace {

struct Place {
    std::jmp_buf registers;
    Place* outer;
    pid_t process;
};

// The innermost guarded call of this thread.
thread_local Place* gInnermost = nullptr;

class Entered {
  public:
    explicit Entered(Place& place) : mPlace(place) { gInnermost = &place; }
    ~Entered() { gInnermost = mPlace.outer; }

    Entered(const Entered&) = delete;
    Entered& operator=(const Entered&) = delete;

  private:
    Place& mPlace;
};

std::atomic<void (*)()> gHandlerForOtherThreads = nullptr;

void StopLibrary() {
    ExitGuard::Leave();
    const auto handler = gHandlerForOtherThreads.load();
    if (handler != nullptr && gettid() != getpid()) {
        handler();
        while (true) {
            pause();
        }
    }
}

}  // namespace

bool ExitGuard::CallPlain(void (*function)(void* context), void* context) {
    Place place;
    place.outer = gInnermost;
    place.process = getpid();
    const Entered entered(place);
    if (setjmp(place.registers) != 0) {
        return false;
    }
    function(context);
    return true;
}

void ExitGuard::Leave() {
    // A forked child is free to end before it has become another program.
    if (gInnermost != nullptr && gInnermost->process == getpid()) {
        std::longjmp(gInnermost->registers, 1);
    }
}

void ExitGuard::SetHandlerForOtherThreads(void (*handler)()) {
    gHandlerForOtherThreads = handler;
}

extern "C" {

void exit(int status) noexcept {
    StopLibrary();
    using Exit = void (*)(int);
    const auto ordinary = reinterpret_cast<Exit>(dlsym(RTLD_NEXT, "exit"));
    ordinary(status);
    std::abort();
}

void _exit(int status) {
    StopLibrary();
    syscall(SYS_exit_group, status);
    std::abort();
}
}
