#pragma once

// The application: the top of the chain of command, the event loop, and the list of windows, which it owns.
// At most one exists at a time, on the main thread. Creating it creates the QApplication if there is none
// yet.
//
// Every way out calls DoQuit: the menu, a window's close box, the end of the desktop session, the signals
// SIGTERM, SIGINT, SIGHUP and SIGQUIT (while this object exists), and the application itself. If the
// connection to the display or the session manager breaks, nobody is asked: work under way is completed
// without a display, and then Run says so on standard error and returns.

#include <QDialog>
#include <QPointer>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "framework/core/KeptException.h"
#include "framework/core/LCommander.h"

class LDialogBox;
class LWindow;
class QuitRequests;

class LApplication : public LCommander {
  public:
    LApplication();
    ~LApplication() override;

    // The application object that exists now, or null.
    static LApplication* Current();

    // Sets the folder of the layouts and the icon (UResources.h), usually the bundle's Contents/Resources.
    // Until then there are none.
    void UseResources(std::filesystem::path folder) { mResources = std::move(folder); }
    const std::filesystem::path& Resources() const { return mResources; }

    // Gives windows created from then on this title instead of their layouts', unless it is empty. The
    // desktop shows the program's name after it.
    void UseTitle(std::string title) { mTitle = std::move(title); }

    // Calls StartUp and then runs the event loop until a quit is accepted. An exception is reported, on
    // standard error and in an alert, and the loop continues; after one that escapes from StartUp the
    // application quits.
    void Run();

    // One pass of the event loop. Called by Run it sleeps until something happens; called from inside long
    // work it handles what is pending and returns at once, and does nothing while the display does not
    // answer. An exception from an event handler leaves only the outermost pass, after everything below it
    // has returned.
    void ProcessNextEvent();

    // As ProcessNextEvent from inside long work, but keys and clicks are left for later: lets the windows
    // draw, and tells the desktop that the program is alive.
    void DrawInPassing();

    // Keeps the exception that is being handled for the application that exists now; its outermost
    // ProcessNextEvent throws it. Without an application it goes to standard error.
    static void KeepCurrentException() noexcept;

    // Quits if everyone in the chain of command agrees, and otherwise calls QuitRefused. A dialog that is up
    // is dismissed as cancelled; a later one is cancelled without being shown.
    void DoQuit(int32_t saveOption = kSaveOptionAsk);

    // Whether the program may quit because the desktop session ends. The user may quit it all the same.
    virtual bool AllowsEndOfSession() const { return true; }

    // Whether a quit has been accepted.
    bool IsQuitting() const { return mState == State::kQuitting; }

    // Closes the About box and the help, which may cover what the window shows.
    void ClosePages();

    // Sets what the About box shows besides the versions, in lines. The function is called when the box is
    // created.
    void SetAboutDetails(std::function<std::string()> details) { mAboutDetails = std::move(details); }

    // Whether Run returned because the connection to the display or the session manager broke.
    bool HasLostDisplay() const { return mHasLostDisplay; }

    // Handles About, Help and Quit. Quit can be chosen while AttemptQuitSelf agrees.
    bool ObeyCommand(CommandT command, void* parameter = nullptr) override;
    void FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark, uint16_t& outMark,
                           unsigned char* outName) override;

    // The window that alerts belong to: the latest one that is visible, or null.
    LWindow* FrontWindow() const;

  protected:
    // Called once by Run, before the first event.
    virtual void StartUp();

    // Tells the user that the program does not quit: beeps.
    virtual void QuitRefused();

    // Shows the dialog of dialog-128.ui and returns at once. Its pane "VERS" shows the version that
    // QCoreApplication knows, "QTVR" Qt's, and "DETL" the details.
    virtual void ShowAboutBox();

    // Shows the page of dialog-130.ui in the same way.
    virtual void ShowHelp();

  private:
    friend class LWindow;
    enum class State { kConstructed, kStartingUp, kRunning, kQuitting };

    void AddWindow(LWindow* window);
    void RemoveWindow(LWindow* window);
    void Report(const std::exception_ptr& exception);
    // Reports what was kept in the pass that ended the program.
    void ReportUnthrown();
    // Shows what a layout describes beside the front window, which owns it from the first time on.
    void ShowPage(const char* name, int32_t layoutID, const std::function<void(LDialogBox&)>& fill);
    void EndWithoutDisplay();

    State mState = State::kConstructed;
    bool mHasLostDisplay = false;
    KeptException mKept;
    std::filesystem::path mResources;
    std::string mTitle;
    int32_t mPassDepth = 0;
    std::vector<LWindow*> mWindows;
    std::vector<QPointer<QDialog>> mPages;
    std::unique_ptr<QuitRequests> mQuitRequests;
    std::function<std::string()> mAboutDetails;
};

// Calls a function and keeps what it throws. Exceptions must not cross the event loop's own frames, nor
// unwind a firmware write that happens to be running below them, so every entry point that the event loop
// calls runs inside this.
template <typename Function>
void KeepException(Function&& function) noexcept {
    try {
        std::forward<Function>(function)();
    } catch (...) {
        LApplication::KeepCurrentException();
    }
}
