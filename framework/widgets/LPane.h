#pragma once

// The framework's side of a widget in a window. A pane class derives from its Qt class first and from this
// second, so a pane is a widget; its ID is the widget's object name, as CodeFromName reads it. Its Qt parent
// owns it.

#include "framework/core/FourCharCode.h"
#include "framework/core/LAttachable.h"

class QWidget;

class LPane : public virtual LAttachable {
  public:
    PaneIDT GetPaneID() const;

    // A hidden pane keeps its place in the layout, so that nothing moves when panes come and go. A pane that
    // is hidden or disabled gives up the keyboard.
    virtual void Show();
    virtual void Hide();

    virtual void Enable();
    virtual void Disable();

    // Whether the user can act on the pane now: it is shown and enabled, no dialog is in front of its window,
    // and no quit has been accepted.
    bool IsUsable() const;

    // Gives the pane its window's keyboard.
    void TakeKeyboard();

    // Marks the pane to be redrawn by the event loop.
    void Refresh();

    // Called once, after the layout has set all the widget's properties.
    virtual void FinishCreate();

  protected:
    explicit LPane(QWidget* self) : mWidget(self) {}

    QWidget* PaneWidget() const { return mWidget; }

  private:
    QWidget* mWidget;
};

// The first pane with that ID in a window or dialog, or null. Widgets that are not panes have no ID.
LPane* FindPaneByID(const QWidget& window, PaneIDT paneID);
