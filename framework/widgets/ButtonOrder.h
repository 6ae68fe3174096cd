#pragma once

class QWidget;

// Puts the buttons in a window's rows, which layouts give from the way out to the action, in the order that
// the desktop's own dialogs have.
void TakeDesktopsButtonOrder(QWidget& window);
