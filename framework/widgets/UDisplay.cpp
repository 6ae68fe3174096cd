#include "framework/widgets/UDisplay.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "framework/widgets/DisplayProbe.h"
#include "framework/widgets/UQDGlobals.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kPatience(100);
// How long an answer counts as fresh: in a simulated write passes follow each other faster.
constexpr milliseconds kFresh(2);

std::atomic<bool> gIsGone = false;
bool gIsAsking = false;
// Halved each time the display does not answer in time, so that a slow one adds little to a write.
milliseconds gPatience = kPatience;
steady_clock::time_point gLastAnswer;

std::string gProgramName;
int gExitCodeWithout = 0;

// Without a display Qt aborts. Its own messages before that are about plug-ins and do not help the user.
void ReportNoDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*message*/) {
    if (type == QtFatalMsg) {
        std::fprintf(
            stderr,
            "%s: No display can be opened for the window. Start the program in a desktop session, or "
            "set DISPLAY or WAYLAND_DISPLAY to one.\n",
            gProgramName.c_str());
        std::_Exit(gExitCodeWithout);
    }
}

// Null if there is nothing to ask.
DisplayProbe* Probe() {
    static const std::unique_ptr<DisplayProbe> probe = DisplayProbe::Create();
    return probe.get();
}

bool WaitForAnswer(DisplayProbe& probe) {
    const auto end = steady_clock::now() + gPatience;
    while (!probe.IsAnswered()) {
        const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
        if (left.count() <= 0 || probe.IsGone()) {
            return false;
        }
        probe.Wait(static_cast<int>(left.count()));
    }
    return true;
}

}  // namespace

bool UDisplay::sHasStopped = false;

void UDisplay::Open(const char* programName, int exitCodeWithout) {
    gProgramName = programName;
    gExitCodeWithout = exitCodeWithout;
    const QtMessageHandler usual = qInstallMessageHandler(ReportNoDisplay);
    UQDGlobals::InitializeToolbox();
    qInstallMessageHandler(usual);
    ExitGuard::SetHandlerForOtherThreads([] {
        NoteGone();
        QAbstractEventDispatcher::instance(qApp->thread())->wakeUp();
    });
}

bool UDisplay::IsGone() {
    DisplayProbe* const probe = Probe();
    if (probe != nullptr && probe->IsGone()) {
        NoteGone();
    }
    return gIsGone;
}

bool UDisplay::Answers() {
    if (IsGone()) {
        return false;
    }
    DisplayProbe* const probe = Probe();
    if (probe == nullptr || (!gIsAsking && steady_clock::now() - gLastAnswer < kFresh)) {
        return true;
    }
    if (gIsAsking) {
        gIsAsking = !probe->IsAnswered();
    } else {
        probe->Ask();
        gIsAsking = !WaitForAnswer(*probe);
        gPatience = gIsAsking ? gPatience / 2 : kPatience;
    }
    if (gIsAsking) {
        return false;
    }
    gLastAnswer = steady_clock::now();
    return !IsGone();
}

void UDisplay::LeaveBrokenPass() {
    if (sHasStopped) {
        ExitGuard::Leave();
    }
}

void UDisplay::NoteGone() {
    gIsGone = true;
}
