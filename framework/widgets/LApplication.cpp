#include "framework/widgets/LApplication.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <algorithm>
#include <cstdio>
#include <string>

#include "framework/core/UKeptException.h"
#include "framework/widgets/LDialogBox.h"
#include "framework/widgets/LStaticText.h"
#include "framework/widgets/LWindow.h"
#include "framework/widgets/ModalDialogs.h"
#include "framework/widgets/QuitRequests.h"
#include "framework/widgets/StandardAlert.h"
#include "framework/widgets/UQDGlobals.h"

namespace {

constexpr int32_t kAboutLayout = 128;
constexpr PaneIDT kVersionPane = FourCharCode("VERS");

LApplication* gCurrent = nullptr;

std::string Describe(const std::exception_ptr& exception) {
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception& known) {
        return known.what();
    } catch (...) {
        return "unknown exception";
    }
}

}  // namespace

LApplication::LApplication() {
    UQDGlobals::InitializeToolbox();
    gCurrent = this;
    mQuitRequests = std::make_unique<QuitRequests>(*this);
    SwitchTarget(this);
}

LApplication::~LApplication() {
    while (!mWindows.empty()) {
        delete mWindows.back();
    }
    gCurrent = nullptr;
}

LApplication* LApplication::Current() {
    return gCurrent;
}

void LApplication::Run() {
    mState = State::kStartingUp;
    try {
        StartUp();
        // What an alert's own event loop kept meanwhile.
        UKeptException::RethrowKept();
    } catch (...) {
        Report(std::current_exception());
        DoQuit();
    }
    if (!IsQuitting()) {
        mState = State::kRunning;
    }
    while (!IsQuitting()) {
        try {
            ProcessNextEvent();
        } catch (...) {
            Report(std::current_exception());
        }
    }
    // What the destructors still have to do may take its time; nobody should click into a window meanwhile.
    for (LWindow* window : mWindows) {
        window->hide();
    }
}

void LApplication::ProcessNextEvent() {
    const bool isOutermost = mPassDepth == 0;
    {
        const QScopedValueRollback<int32_t> depth(mPassDepth, mPassDepth + 1);
        const bool maySleep = isOutermost && mState == State::kRunning;
        QCoreApplication::processEvents(maySleep ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
    }
    if (isOutermost) {
        UKeptException::RethrowKept();
    }
}

void LApplication::DoQuit(int32_t saveOption) {
    if (IsQuitting()) {
        return;
    }
    if (AttemptQuit(saveOption)) {
        mState = State::kQuitting;
        DismissDialogs();
    } else {
        QuitRefused();
    }
}

bool LApplication::ObeyCommand(CommandT command, void* parameter) {
    switch (command) {
        case kCommandAbout:
            ShowAboutBox();
            return true;
        case kCommandQuit:
            DoQuit();
            return true;
        default:
            return LCommander::ObeyCommand(command, parameter);
    }
}

void LApplication::FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark,
                                     uint16_t& outMark, unsigned char* outName) {
    if (command == kCommandAbout) {
        outEnabled = 1;
    } else if (command == kCommandQuit) {
        outEnabled = AttemptQuitSelf(kSaveOptionAsk) ? 1 : 0;
    } else {
        LCommander::FindCommandStatus(command, outEnabled, outUsesMark, outMark, outName);
    }
}

LWindow* LApplication::FrontWindow() const {
    const auto front = std::find_if(mWindows.rbegin(), mWindows.rend(),
                                    [](const LWindow* window) { return window->isVisible(); });
    return front == mWindows.rend() ? nullptr : *front;
}

void LApplication::StartUp() {}

void LApplication::QuitRefused() {
    QApplication::beep();
}

void LApplication::ShowAboutBox() {
    static const QString kName = "about";
    LWindow* window = FrontWindow();
    if (window == nullptr) {
        return;
    }
    auto* about = window->findChild<QDialog*>(kName, Qt::FindDirectChildrenOnly);
    if (about == nullptr) {
        std::unique_ptr<LDialogBox> made = LDialogBox::CreateDialog("dialog", kAboutLayout, this);
        if (made == nullptr) {
            return;
        }
        if (auto* version = dynamic_cast<LStaticText*>(made->FindPaneByID(kVersionPane))) {
            const QByteArray text = QCoreApplication::applicationVersion().toUtf8();
            version->SetText(text.constData(), static_cast<int32_t>(text.size()));
        }
        about = made.release();  // the window it belongs to owns it from here
        about->setObjectName(kName);
    }
    about->show();
    about->raise();
    about->activateWindow();
}

void LApplication::AddWindow(LWindow* window) {
    mWindows.push_back(window);
}

void LApplication::RemoveWindow(LWindow* window) {
    std::erase(mWindows, window);
}

void LApplication::Report(const std::exception_ptr& exception) {
    const std::string what = Describe(exception);
    std::fprintf(stderr, "Unexpected error: %s\n", what.c_str());
    const std::string advice = mState == State::kStartingUp
                                   ? "The program could not start and will quit (" + what +
                                         ").\nIf this happens again, install the program again."
                                   : "The program could not finish what it was doing (" + what +
                                         ").\nQuit it and open it again. If this happens again, install the "
                                         "program again.";
    Str255 title;
    Str255 explanation;
    PascalFromText("An unexpected error occurred", title);
    PascalFromText(advice, explanation);
    StandardAlert(kAlertCautionAlert, title, explanation, nullptr, nullptr);
}
