#pragma once

#include <QSize>

class QLabel;
class QWidget;

// How large a window that belongs to a widget's screen can be, its frame aside, without reaching beyond the
// screen.
QSize RoomOnScreen(const QWidget& widget);

// The width for a label's text in a dialog: that of its longest line, unless the line would be too long to
// read or the dialog too wide for the screen, so that the text is to be wrapped.
int ComfortableTextWidth(const QLabel& label);
