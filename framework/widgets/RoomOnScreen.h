#pragma once

#include <QSize>

class QWidget;

// How large a window that belongs to a widget's screen can be, its frame aside, without reaching beyond the
// screen.
QSize RoomOnScreen(const QWidget& widget);
