#pragma once

// What makes windows and dialogs fit the desktop: the size of its screen, the order of its buttons.
//
// If the screen is too small, only a part of the window or dialog scrolls: the widget that its layout names
// "scrolled". The rest, above all the buttons, stays in view.

#include <QSize>

class QDialog;
class QLabel;
class QScrollArea;
class QWidget;

// The largest size, without the frame, at which a window fits on a widget's screen.
QSize RoomOnScreen(const QWidget& widget);

// The width for a label's text in a dialog: that of its longest line, unless that would be too long to read
// or too wide for the screen, so that the text must be wrapped.
int ComfortableTextWidth(const QLabel& label);

// Replaces the part of the contents that scrolls with a scroll area around it. Null if they have no such
// part.
QScrollArea* MakeScroll(QWidget& contents);

// Makes a dialog that is not shown yet no larger than the screen.
void FitOnScreen(QDialog& dialog);

// Puts the buttons in a window's rows into the order of the desktop's own dialogs. Layouts have the way out
// first and the action last.
void TakeDesktopsButtonOrder(QWidget& window);

// Removes the icons that some desktops put on a dialog's buttons, so that these look like all other buttons.
void RemoveButtonIcons(QDialog& dialog);
