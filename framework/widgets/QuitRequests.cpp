#include "framework/widgets/QuitRequests.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "framework/widgets/LApplication.h"

namespace {

// The end of the pipe that signal handlers write to.
volatile sig_atomic_t gSignalPipeEnd = -1;

// A signal handler may do hardly anything, so it leaves one byte for the event loop.
void NoteSignal(int /*signalNumber*/) {
    const int before = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(gSignalPipeEnd, &byte, 1);
    errno = before;
}

}  // namespace

QuitRequests::QuitRequests(LApplication& application)
    : mApplication(application), mSession([this] { return EndSession(); }) {
    qApp->installEventFilter(this);
    ListenToSignals();
}

QuitRequests::~QuitRequests() {
    // The signal may be repeated while the program cleans up and saves, and must not cut that short. So after
    // an accepted quit the signals keep their handler, and its pipe stays open, until the program ends.
    if (mSignalPipe[0] < 0 || mApplication.IsQuitting()) {
        return;
    }
    for (std::size_t index = 0; index < kSignals.size(); ++index) {
        sigaction(kSignals[index], &mPreviousActions[index], nullptr);
    }
    gSignalPipeEnd = -1;
    close(mSignalPipe[0]);
    close(mSignalPipe[1]);
}

bool QuitRequests::eventFilter(QObject* watched, QEvent* event) {
    if (watched != qApp || event->type() != QEvent::Quit) {
        return false;
    }
    event->setAccepted(AskToQuit());
    return true;
}

bool QuitRequests::AskToQuit() noexcept {
    KeepException([this] { mApplication.DoQuit(); });
    return mApplication.IsQuitting();
}

bool QuitRequests::EndSession() noexcept {
    return mApplication.IsQuitting() || (mApplication.AllowsEndOfSession() && AskToQuit());
}

void QuitRequests::ListenToSignals() {
    if (pipe2(mSignalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        std::fprintf(stderr, "Cannot listen to signals: %s\n", std::strerror(errno));
        return;
    }
    auto* notifier = new QSocketNotifier(mSignalPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes;
        while (read(mSignalPipe[0], bytes.data(), bytes.size()) > 0) {
        }
        AskToQuit();
    });
    gSignalPipeEnd = mSignalPipe[1];
    for (std::size_t index = 0; index < kSignals.size(); ++index) {
        sigaction(kSignals[index], nullptr, &mPreviousActions[index]);
        if (mPreviousActions[index].sa_handler == SIG_IGN) {
            continue;
        }
        struct sigaction action = {};
        action.sa_handler = &NoteSignal;
        action.sa_flags = SA_RESTART;
        sigaction(kSignals[index], &action, nullptr);
    }
}
