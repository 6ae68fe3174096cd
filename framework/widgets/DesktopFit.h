#pragma once

// What makes windows and dialogs fit the desktop: the size of its screen, the order of its buttons.

#include <QSize>

class QDialog;
class QLabel;
class QWidget;

// How large a window on a widget's screen can be, without its frame, and still fit.
QSize RoomOnScreen(const QWidget& widget);

// The width for a label's text in a dialog: that of its longest line, unless that would be too long to read
// or too wide for the screen, so that the text has to be wrapped.
int ComfortableTextWidth(const QLabel& label);

// Puts the buttons in a window's rows, which layouts give from the way out to the action, in the order of the
// desktop's own dialogs.
void TakeDesktopsButtonOrder(QWidget& window);

// Removes the icons that some desktops put on a dialog's buttons, so that these look like all other buttons.
void RemoveButtonIcons(QDialog& dialog);
