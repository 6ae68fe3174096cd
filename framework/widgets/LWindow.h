#pragma once

#include <QMainWindow>

#include "framework/core/LCommander.h"
#include "framework/widgets/LPane.h"

// A window. The application's window list owns it; its close box asks the chain of command to quit.
class LWindow : public QMainWindow, public LPane, public LCommander {
  public:
    static constexpr const char* kClassName = "LWindow";

    LWindow();
    ~LWindow() override;

    // Builds the hidden window that window-<layoutID>.ui describes, gives it the menu bar and puts it on the
    // application's window list. Null, with one line on standard error, when there is no usable layout.
    static LWindow* CreateWindow(int32_t layoutID, LCommander* super);

    // The pane with that ID, or null. dynamic_cast tells what else it is (LBroadcaster, LStaticText, ...).
    LPane* FindPaneByID(PaneIDT paneID) const;

    void Show() override;

    // Draws the window's present state now, without waiting for the event loop.
    void UpdatePort();

    // Has the desktop point the user to the window, if it is not the active one.
    void CallForAttention();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

  private:
    void KeepRoomForContents();
};
