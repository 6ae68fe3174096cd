#include "framework/widgets/LApplication.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QShortcut>
#include <algorithm>
#include <cstdio>
#include <string>

#include "framework/widgets/DesktopFit.h"
#include "framework/widgets/DialogLoop.h"
#include "framework/widgets/DisplayWatchdog.h"
#include "framework/widgets/LDialogBox.h"
#include "framework/widgets/LStaticText.h"
#include "framework/widgets/LWindow.h"
#include "framework/widgets/QuitRequests.h"
#include "framework/widgets/StandardAlert.h"
#include "framework/widgets/UDisplay.h"
#include "framework/widgets/UQDGlobals.h"

namespace {

constexpr int32_t kAboutLayout = 128;
constexpr int32_t kHelpLayout = 130;
constexpr PaneIDT kVersionPane = FourCharCode("VERS");
constexpr PaneIDT kQtVersionPane = FourCharCode("QTVR");
constexpr PaneIDT kDetailsPane = FourCharCode("DETL");

LApplication* gCurrent = nullptr;

void SetText(const LDialogBox& dialog, PaneIDT paneID, const QString& text) {
    if (auto* pane = dynamic_cast<LStaticText*>(dialog.FindPaneByID(paneID))) {
        const QByteArray bytes = text.toUtf8();
        pane->SetText(bytes.constData(), static_cast<int32_t>(bytes.size()));
    }
}

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
}

LApplication::~LApplication() {
    // If the display is gone, windows are left until the process ends.
    UDisplay::Use([this] {
        while (!mWindows.empty()) {
            delete mWindows.back();
        }
    });
    gCurrent = nullptr;
}

LApplication* LApplication::Current() {
    return gCurrent;
}

void LApplication::KeepCurrentException() noexcept {
    if (gCurrent != nullptr) {
        gCurrent->mKept.KeepCurrent();
    } else {
        std::fprintf(stderr, "Unexpected error: %s\n", Describe(std::current_exception()).c_str());
    }
}

void LApplication::Run() {
    mState = State::kStartingUp;
    try {
        StartUp();
        // An alert's own event loop may have kept an exception.
        mKept.Rethrow();
    } catch (...) {
        Report(std::current_exception());
        DoQuit();
    }
    if (!IsQuitting()) {
        mState = State::kRunning;
    }
    while (!IsQuitting() && !UDisplay::IsGone()) {
        try {
            ProcessNextEvent();
        } catch (...) {
            Report(std::current_exception());
        }
    }
    ReportUnthrown();
    // If the display is gone, even a start-up or a quit has not ended as the user wanted.
    if (UDisplay::IsGone()) {
        EndWithoutDisplay();
    }
    // The destructors may take some time; the user must not click into a window meanwhile.
    UDisplay::Use([this] {
        while (QWidget* popup = QApplication::activePopupWidget()) {
            popup->close();
        }
        for (LWindow* window : mWindows) {
            window->hide();
        }
    });
}

void LApplication::ProcessNextEvent() {
    const bool isOutermost = mPassDepth == 0;
    {
        const QScopedValueRollback<int32_t> depth(mPassDepth, mPassDepth + 1);
        if (isOutermost) {
            const bool maySleep = mState == State::kRunning;
            const auto flags = maySleep ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents;
            UDisplay::Use([flags] { QCoreApplication::processEvents(flags); });
        } else {
            UDisplay::UseInPassing([] { QCoreApplication::processEvents(); });
        }
    }
    if (isOutermost) {
        mKept.Rethrow();
    }
}

void LApplication::DrawInPassing() {
    const QScopedValueRollback<int32_t> depth(mPassDepth, mPassDepth + 1);
    UDisplay::UseInPassing([] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); });
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

void LApplication::ReportUnthrown() {
    try {
        mKept.Rethrow();
    } catch (...) {
        Report(std::current_exception());
    }
}

void LApplication::EndWithoutDisplay() {
    std::fputs(
        DisplayWatchdog::HasBrokenOff()
            ? "The display stopped answering. The program completed its work without it, and has ended.\n"
            : "The display or the session has ended, and the program with it.\n",
        stderr);
    mHasLostDisplay = true;
    mState = State::kQuitting;
}

bool LApplication::ObeyCommand(CommandT command, void* parameter) {
    switch (command) {
        case kCommandAbout:
            ShowAboutBox();
            return true;
        case kCommandHelp:
            ShowHelp();
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
    if (command == kCommandAbout || command == kCommandHelp) {
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
    ShowPage("about", kAboutLayout, [this](LDialogBox& about) {
        SetText(about, kVersionPane, QCoreApplication::applicationVersion());
        SetText(about, kQtVersionPane, qVersion());
        SetText(about, kDetailsPane, mAboutDetails ? QString::fromStdString(mAboutDetails()) : QString());
    });
}

void LApplication::ShowHelp() {
    ShowPage("help", kHelpLayout, [](LDialogBox&) {});
}

void LApplication::ShowPage(const char* name, int32_t layoutID,
                            const std::function<void(LDialogBox&)>& fill) {
    LWindow* window = FrontWindow();
    if (window == nullptr) {
        return;
    }
    auto* page = window->findChild<QDialog*>(name, Qt::FindDirectChildrenOnly);
    if (page == nullptr) {
        std::unique_ptr<LDialogBox> made = LDialogBox::CreateDialog("dialog", layoutID, this);
        if (made == nullptr) {
            return;
        }
        fill(*made);
        page = made.release();  // the window that it belongs to owns it from now on
        page->setObjectName(name);
        mPages.emplace_back(page);
        QObject::connect(new QShortcut(QKeySequence::Close, page), &QShortcut::activated, page,
                         &QDialog::reject);
        FitOnScreen(*page);
    }
    page->show();
    page->raise();
    page->activateWindow();
}

void LApplication::ClosePages() {
    for (const QPointer<QDialog>& page : mPages) {
        if (page != nullptr) {
            UDisplay::Use([&page] { page->reject(); });
        }
    }
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
