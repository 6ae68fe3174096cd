#pragma once

// A window. The application's window list owns it; its close box asks the chain of command to quit. It can
// copy the values that its captions name, as text, one line each. On a screen that is too small, its contents
// move closer together; if that is not enough, its widget "scrolled" scrolls.

#include <QMainWindow>

#include "framework/core/LCommander.h"
#include "framework/widgets/LPane.h"

class QScrollArea;

class LWindow : public QMainWindow, public LPane, public LCommander {
  public:
    static constexpr const char* kClassName = "LWindow";

    LWindow();
    ~LWindow() override;

    // Builds the hidden window that window-<layoutID>.ui describes, gives it the menu bar and puts it on the
    // application's window list. Null, with one line on standard error, if there is no usable layout.
    static LWindow* CreateWindow(int32_t layoutID, LCommander* super);

    // The pane with that ID, or null. dynamic_cast shows what else it is (LBroadcaster, LStaticText, ...).
    LPane* FindPaneByID(PaneIDT paneID) const;

    void Show() override;

    // Handles kCommandCopyDetails.
    bool ObeyCommand(CommandT command, void* parameter = nullptr) override;
    void FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark, uint16_t& outMark,
                           unsigned char* outName) override;

    // Draws the window's current state now, without waiting for the event loop.
    void UpdatePort();

    // Asks the desktop to point the user to the window if it is not the active one.
    void CallForAttention();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget* Contents() const;
    void FitOnScreen();
    void ScrollContents();
    void KeepRoomForContents();
    QString Details() const;

    QScrollArea* mScrollArea = nullptr;  // the parent of what scrolls
};
